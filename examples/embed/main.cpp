// embed STATION FOLDER: exports the events of a station as a CSV report into a folder.
#include <FetchyardBussiness/DownloadBussinessManager.h>
#include <ZellClientHostSettings/ClientSettings.h>

#include <future>
#include <iostream>

struct Observer final : FetchyardBussiness::CDownloadBussinessManagerObserver
{
    void UpdateDownloadBussinessManagerState(const Param& report) override
    {
        std::cout << report.task_guid << " is in state " << report.state << "\n";
        if (report.state >= 4 && report.state <= 6)  // finished, failed, stopped
            end.set_value(report.state);
    }
    std::promise<int> end;
};

int main(int, char** argv)
{
    ZellClientHost::ClientSettings settings = ZellClientHost::GetClientSettings();
    settings.sites[0] = argv[1];
    settings.save_path = argv[2];
    ZellClientHost::SetClientSettings(settings);

    auto& manager = FetchyardBussiness::CDownloadBussinessManager::Instance();
    Observer observer;
    manager.Init();
    manager.RegisterObserver(&observer);
    std::vector<std::string> guids;
    manager.AddDownloadCommTask(guids, {R"({"FileExportRequest":{"FileExportType":0,"RequestData":{
        "ExportFileParam":{"RequestMethod":"POST","RequestAPI":"/api/v1/events/report",
                           "RequestCondition":"{\"PageIndex\":1,\"PageSize\":100}"},
        "WriteFileCondition":{"ExportFileName":"Alarms","ExportFileType":1}}}})"});
    const int state = observer.end.get_future().get();
    manager.SyncUnregisterObserver(&observer);
    manager.Unit();
    return state == 4 ? 0 : 1;
}
