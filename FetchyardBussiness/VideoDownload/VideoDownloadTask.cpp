#include "FetchyardBussiness/VideoDownload/VideoDownloadTask.h"

#include "FetchyardBussiness/Log.h"
#include "ZellTaskKit/PluginComm.h"

namespace FetchyardBussiness {

using ZellTaskKit::CPluginCommData;

void CVideoDownloadTask::Exec()
{
    NotifyTaskState(ZellTaskKit::Downloading);
    LogInfo("Start download video.");
    const std::shared_ptr<VideoTaskParam> param = GetDownloadTaskParam<VideoTaskParam>();
    if (!param) {
        NotifyTaskState(ZellTaskKit::Failed);
        LogError("Start download video failed. convert video param failed.");
        return;
    }
    for (const std::string& text : param->video_requests) {
        const auto request = std::make_shared<CPluginCommData>(text, nullptr);
        LogInfo("Request API: /API/ClipVault/V0/DownloadVideoFiles, request message : %s.", text.c_str());
        std::shared_ptr<CPluginCommData> response;
        if (!ZellTaskKit::CPluginCommManager::Instance().DoRequest(
                response, "/API/ClipVault/V0/DownloadVideoFiles", request)) {
            LogError("Do request failed.");
            NotifyTaskState(ZellTaskKit::Failed);
            return;
        }
    }
    NotifyTaskState(ZellTaskKit::Finished);
}

bool CVideoDownloadTask::Stop()
{
    return true;
}

ZellTaskKit::CDownloadProgress CVideoDownloadTask::GetProgress()
{
    return {};
}

bool CVideoDownloadTask::Suspend()
{
    return true;
}

}  // namespace FetchyardBussiness
