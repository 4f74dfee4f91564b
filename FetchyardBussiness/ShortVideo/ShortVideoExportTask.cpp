#include "FetchyardBussiness/ShortVideo/ShortVideoExportTask.h"

#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/ShortVideo/StoredObject.h"

namespace FetchyardBussiness {

CShortVideoExportTask::CShortVideoExportTask() : downloader_(std::make_shared<ZellTaskKit::CFileDownloader>())
{
}

void CShortVideoExportTask::Exec()
{
    NotifyTaskState(ZellTaskKit::Downloading);
    LogInfo("Start export shortvideo.");
    const auto param = GetDownloadTaskParam<ShortVideoDownloadParam>();
    if (!param) {
        NotifyTaskState(ZellTaskKit::Failed);
        LogError("Export file failed. create file ptr failed. ");
        return;
    }
    const std::string name = param->GetVal_str_name();
    const std::string guid = param->GetVal_str_guid();
    const std::string path = param->GetVal_str_file_path();
    LogInfo("Start export file, file name: %s, file guid: %s, file save path: %s.", name.c_str(),
            guid.c_str(), path.c_str());
    bool all_fetched = true;
    for (const ShortVideoItem& clip : param->clips) {
        if (!FetchStoredObjectFile(*downloader_, clip))
            all_fetched = false;
    }
    if (!all_fetched) {
        NotifyTaskState(ZellTaskKit::Failed);
        return;
    }
    NotifyTaskState(ZellTaskKit::Finished);
    LogInfo("download export file sucess, file name: %s, file guid: %s, file save path: %s.", name.c_str(),
            guid.c_str(), path.c_str());
}

bool CShortVideoExportTask::Stop()
{
    return true;
}

ZellTaskKit::CDownloadProgress CShortVideoExportTask::GetProgress()
{
    return {};
}

bool CShortVideoExportTask::Suspend()
{
    return true;
}

}  // namespace FetchyardBussiness
