// bench_memory KIND FOLDER COUNT: exports COUNT rows by 10 columns, or COUNT pictures, and prints the seconds
// it took.
//   csv, xlsx, txt  through the whole library, from the request to the end state
//   csv-writer      the CSV writer alone, over one page again and again
//   html            the staged HTML of a PDF report alone, which stays in FOLDER/bench.html
//   xlsx-pictures   the Excel writer alone, a picture a row
// and, to compare with,
//   txt-loop        a plain QTextStream loop over the same cells
//   picture-loop    what each picture of a workbook needs: load, scale, save, load again, encode
#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportCsv.h"
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportExcel.h"
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportPdf.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "MemoryPages.h"
#include "MemoryPictures.h"
#include "ZellBase/FileSystem.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QTextStream>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

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

// One page again and again through a writer of its own; the workbook is closed with the last.
template <typename Writer>
bool WriteAlone(const std::string& folder, FetchyardLogical::ExportSheet sheet, int pages, bool finishes)
{
    Writer writer;
    FetchyardLogical::ExportDataNode node;
    node.export_file_type = finishes ? 0 : 1;
    node.file_name = "bench";
    node.file_save_path = folder;
    node.vec_sheets.push_back(std::move(sheet));
    for (int page = 1; page <= pages; ++page) {
        node.vec_sheets.front().page_index = page;
        node.file_total_page_is_finished = finishes && page == pages;
        if (!writer.ExportDataToFile(node))
            return false;
    }
    return true;
}

bool PlainTextLoop(const std::string& folder, const PagePlan& plan)
{
    const FetchyardLogical::ExportSheet sheet = MakeSheet(plan, 1);
    QFile file(QString::fromStdString(folder + "bench.txt"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    for (int page = 1; page <= plan.rows / plan.rows_in_page; ++page) {
        for (const auto& row : sheet.vec_rows) {
            for (const auto& cell : row)
                stream << QString::fromStdString(cell.cell_name) << "          ";
            stream << '\n';
        }
    }
    stream.flush();
    return stream.status() == QTextStream::Ok;
}

bool WritePictures(const std::string& folder, int count)
{
    constexpr int kRowsInPage = 100;
    FetchyardLogical::ExportCell cell;
    cell.cell_name = "/picture.jpg";
    cell.cell_format.cell_type = 2;
    FetchyardLogical::ExportSheet sheet;
    sheet.sheet_name = "Pictures";
    sheet.vec_rows.assign(kRowsInPage, {cell});
    return WriteAlone<FetchyardBussiness::CExportReportDataToEXCELFileObject>(folder, sheet,
                                                                              count / kRowsInPage, true);
}

bool PictureLoop(const std::string& folder, int count)
{
    std::size_t bytes = 0;
    for (int i = 0; i < count; ++i) {
        const std::string path = folder + std::to_string(i) + ".jpg";
        WritePicture(path);
        const QString file = QString::fromStdString(path);
        QImage(file).scaled(100, 100, Qt::KeepAspectRatio, Qt::FastTransformation).save(file);
        QBuffer buffer;
        QImage(file).save(&buffer, "jpg");
        bytes += static_cast<std::size_t>(buffer.size());
    }
    return bytes > 0;
}

bool Measure(const std::string& kind, const std::string& folder, const PagePlan& plan)
{
    using namespace FetchyardBussiness;
    const int pages = plan.rows / plan.rows_in_page;
    if (kind == "csv-writer")
        return WriteAlone<CExportReportDataToCSVFileObject>(folder, MakeSheet(plan, 1), pages, false);
    if (kind == "html")
        return WriteAlone<CExportReportDataToPDFFileObject>(folder, MakeSheet(plan, 1), pages, false);
    if (kind == "txt-loop")
        return PlainTextLoop(folder, plan);
    if (kind == "xlsx-pictures")
        return WritePictures(folder, plan.rows);
    if (kind == "picture-loop")
        return PictureLoop(folder, plan.rows);
    return ExportThroughLibrary(folder, kind == "csv"   ? kCsvReport
                                        : kind == "txt" ? kTxtReport
                                                        : kExcelReport);
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
    Picture();
    const Clock::time_point begin = Clock::now();
    const bool done = Measure(kind, folder, plan);
    const std::chrono::duration<double> seconds = Clock::now() - begin;
    std::printf("%.4f\n", seconds.count());
    return done ? 0 : 1;
}
