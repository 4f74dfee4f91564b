// bench_memory KIND FOLDER ROWS: exports ROWS rows by 10 columns and prints the seconds it took.
//   csv, xlsx  through the whole library, from the request to the end state
//   csv-writer the CSV writer alone, over one page again and again
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportCsv.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "MemoryPages.h"
#include "ZellBase/FileSystem.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using namespace FetchyardBench;
using Clock = std::chrono::steady_clock;

void Configure(const std::string& folder)
{
    ZellClientHost::ClientSettings settings;
    settings.data_path = folder + "data/";
    settings.public_data_path = folder + "public/";
    settings.save_path = folder;
    Zell::Base::FileSystem::MakeFullDir(settings.data_path.c_str());
    ZellClientHost::SetClientSettings(settings);
}

bool ExportThroughLibrary(const std::string& folder, int type)
{
    const std::string request =
        R"({"FileExportRequest":{"FileExportType":0,"RequestData":{"ExportFileParam":{"RequestMethod":"POST",)"
        R"("RequestAPI":"/pages","RequestCondition":"{\"PageIndex\":1,\"PageSize\":1000}"},"WriteFileCondition":)"
        R"({"ExportFileName":"bench","ExportFileType":)" +
        std::to_string(type) + R"(,"SaveFilePathDir":")" + folder + R"("}}}})";
    auto& manager = FetchyardBussiness::CDownloadBussinessManager::Instance();
    std::vector<std::string> guids;
    if (!manager.Init() || !manager.AddDownloadCommTask(guids, {request}))
        return false;
    const bool idle = FetchyardLogical::WaitUntilIdle(std::chrono::hours(1));
    const auto tasks = FetchyardLogical::ListTasks();
    manager.Unit();
    return idle && tasks.size() == 1 && tasks.front().state == ZellTaskKit::Finished;
}

bool WriteCsvAlone(const std::string& folder, const PagePlan& plan)
{
    FetchyardBussiness::CExportReportDataToCSVFileObject writer;
    FetchyardLogical::ExportDataNode node;
    node.export_file_type = 1;
    node.file_name = "bench";
    node.file_save_path = folder;
    node.vec_sheets.push_back(MakeSheet(plan, 1));
    for (int page = 1; page <= plan.rows / plan.rows_in_page; ++page) {
        node.vec_sheets.front().page_index = page;
        if (!writer.ExportDataToFile(node))
            return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 4)
        return 2;
    const std::string kind = argv[1];
    const std::string folder = std::string(argv[2]) + "/";
    PagePlan plan;
    plan.rows = std::atoi(argv[3]);
    SetPagePlan(plan);
    Configure(folder);
    const Clock::time_point begin = Clock::now();
    const bool done = kind == "csv-writer" ? WriteCsvAlone(folder, plan)
                                           : ExportThroughLibrary(folder, kind == "csv" ? 1 : 0);
    const std::chrono::duration<double> seconds = Clock::now() - begin;
    std::printf("%.4f\n", seconds.count());
    return done ? 0 : 1;
}
