// forgetful_host STATION FOLDER: a host that starts an export, waits for its first report of state 1 and
// leaves main without stopping the library.
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <condition_variable>
#include <mutex>

namespace {

class FirstReport final : public FetchyardBussiness::CDownloadBussinessManagerObserver
{
public:
    void UpdateDownloadBussinessManagerState(const Param& /*param*/) override
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        heard_ = true;
        condition_.notify_all();
    }

    void Wait()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        condition_.wait(lock, [this] { return heard_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable condition_;
    bool heard_ = false;
};

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    const std::string folder = std::string(argv[2]) + "/";
    ZellClientHost::ClientSettings settings;
    settings.data_path = folder + "data/";
    settings.public_data_path = folder + "public/";
    settings.save_path = folder;
    settings.sites[0] = argv[1];
    ZellClientHost::SetClientSettings(settings);
    // Never destroyed: the process leaves while the library may still call it.
    static auto* const report = new FirstReport;
    auto& manager = FetchyardBussiness::CDownloadBussinessManager::Instance();
    std::vector<std::string> guids;
    const std::string request =
        R"({"FileExportRequest":{"FileExportType":0,"RequestData":{"ExportFileParam":{"RequestMethod":"POST",)"
        R"("RequestAPI":"/api/v1/events/report","RequestCondition":)"
        R"("{\"PageIndex\":1,\"PageSize\":10,\"Pictures\":\"embedded\"}"},)"
        R"("WriteFileCondition":{"ExportFileName":"left","ExportFileType":0}}}})";
    if (!manager.Init() || !manager.RegisterObserver(report) ||
        !manager.AddDownloadCommTask(guids, {request}))
        return 1;
    report->Wait();
    return 0;
}
