// bench_download file URL TARGET: fetches one file through the downloader.
// bench_download files URL FOLDER COUNT: fetches COUNT small files, URL/synthetic/files/<1000 + n>.bin, in
// one task of the whole library. Each prints the seconds it took.
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardBussiness/FileDownload/FileExportParam.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "ZellBase/FileSystem.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellTaskKit/FileDownloader.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;

void Configure(const std::string& folder)
{
    ZellClientHost::ClientSettings settings;
    settings.data_path = folder + "/data/";
    settings.public_data_path = folder + "/public/";
    settings.save_path = folder + "/";
    Zell::Base::FileSystem::MakeFullDir(settings.data_path.c_str());
    ZellClientHost::SetClientSettings(settings);
}

bool FetchOne(const std::string& url, const std::string& target)
{
    Configure(target.substr(0, target.rfind('/')));
    ZellTaskKit::CFileDownloader downloader;
    return downloader.DownloadFile(url, target, {}, nullptr, 1);
}

bool FetchMany(const std::string& url, const std::string& folder, int count)
{
    Configure(folder);
    auto record = std::make_shared<FetchyardBussiness::FileExportParam>();
    record->SetVal_file_type(ZellTaskKit::ServerFile);
    for (int i = 0; i < count; ++i) {
        FetchyardBussiness::FileExportItem item;
        item.file_name = std::to_string(i);
        item.save_path = folder + "/";
        item.request_url = url + "/synthetic/files/" + std::to_string(1000 + i) + ".bin";
        record->file_items.push_back(item);
    }
    auto& manager = FetchyardBussiness::CDownloadBussinessManager::Instance();
    const std::vector<std::shared_ptr<ZellTaskKit::CDownloadTaskParam>> records = {record};
    std::vector<std::string> guids;
    if (!manager.Init() || !manager.AddFileDownloadTask(guids, records))
        return false;
    const bool idle = FetchyardLogical::WaitUntilIdle(std::chrono::hours(1));
    const auto tasks = FetchyardLogical::ListTasks();
    manager.Unit();
    return idle && tasks.size() == 1 && tasks.front().state == ZellTaskKit::Finished;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 4)
        return 2;
    const bool is_one = std::string(argv[1]) == "file";
    const Clock::time_point begin = Clock::now();
    const bool done =
        is_one ? FetchOne(argv[2], argv[3]) : FetchMany(argv[2], argv[3], argc > 4 ? std::atoi(argv[4]) : 1);
    const std::chrono::duration<double> seconds = Clock::now() - begin;
    std::printf("%.4f\n", seconds.count());
    return done ? 0 : 1;
}
