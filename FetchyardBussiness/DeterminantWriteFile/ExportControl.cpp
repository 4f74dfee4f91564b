#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/DeterminantWriteFile/FolderProgress.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Log.h"
#include "ZellNetLink/RapidJsonProto.h"

namespace FetchyardBussiness {

namespace {

constexpr int kOperateStop = 1;
constexpr int kOperateDelete = 2;

}  // namespace

bool CDeterminantWriteFileTask::Stop()
{
    LogInfo("CDeterminantWriteFileTask::Exec() start to stop task.");
    if (b_stop_.exchange(true, std::memory_order_relaxed)) {
        LogInfo(" CDeterminantWriteFileTask::Exec() has already stop.");
        return true;
    }
    const auto param = GetDownloadTaskParam<DeterminantDownloadParam>();
    if (!param) {
        NotifyTaskState(ZellTaskKit::Failed);
        Zell::Base::Error::SetLastError(OwnError(kErrorStopped));
        LogError("Export param failed ");
        return false;
    }
    if (server_side_.Read().is_rowcolumn_data) {
        param->vs_file_param_.restart_is_need_download = true;
        if (CExportReportDataToFileObject* writer = current_writer) {
            LogInfo("Download stop signal to write file b_stop_ =%d", IsStopped());
            writer->SetTaskStopState(IsStopped());
        }
    } else {
        const bool result = TellServer(kOperateStop);
        LogInfo("Download stop signal to server result = %d", result);
    }
    if (b_downloading_video_.load(std::memory_order_relaxed)) {
        TellVideoPlugin(video_stop_func);
        VideoInfoOverlayStop(param->vs_file_param_.vec_video_download);
    }
    LogInfo("finish stop task.");
    return true;
}

bool CDeterminantWriteFileTask::Delete()
{
    LogInfo("CDeterminantWriteFileTask::Delete() b_downloading_video_ = %d",
            b_downloading_video_.load(std::memory_order_relaxed));
    if (server_side_.Read().is_rowcolumn_data) {
        b_delete_.store(true, std::memory_order_relaxed);
        // The writer hears of the stop flag, not of this one: a delete alone lets it finish its page.
        if (CExportReportDataToFileObject* writer = current_writer) {
            LogInfo("Download Delete signal to write file b_stop_ =%d", IsStopped());
            writer->SetTaskStopState(IsStopped());
        }
    } else {
        const bool is_success = TellServer(kOperateDelete);
        LogInfo(" CDeterminantWriteFileTask::Delete() signal to server is_success = %d", is_success);
        b_delete_.store(true, std::memory_order_relaxed);
    }
    if (b_downloading_video_.load(std::memory_order_relaxed))
        DeleteInVideoPhase();
    return true;
}

void CDeterminantWriteFileTask::DeleteInVideoPhase()
{
    if (HasVideoDownload()) {
        LogInfo("CDeterminantWriteFileTask::Delete() b_downloading_video_ ");
        TellVideoPlugin(video_stop_func);
    }
    if (const auto param = GetDownloadTaskParam<DeterminantDownloadParam>())
        VideoInfoOverlayStop(param->vs_file_param_.vec_video_download);
}

bool CDeterminantWriteFileTask::HasVideoDownload()
{
    const std::lock_guard<std::mutex> lock(video_guid_mutex);
    return video_stop_func != nullptr && !video_download_guid.empty();
}

bool CDeterminantWriteFileTask::TellServer(int operate_type)
{
    const ServerSide server_side = server_side_.Read();
    ZellNetLink::CRapidJsonProto message;
    message.set_v("/OperateType", operate_type);
    message.set_v("/TaskId", server_side.task_id);
    RequstData request;
    request.str_method = server_side.operate_request.str_method;
    request.str_quern = server_side.operate_request.str_quern;
    request.str_request = message.get_str(0);
    return FetchyardLogical::CmsGetExportFileData::TakeOperateActionToServer(request);
}

ZellTaskKit::CDownloadProgress CDeterminantWriteFileTask::GetProgress()
{
    ZellTaskKit::CDownloadProgress progress;
    const auto param = GetDownloadTaskParam<DeterminantDownloadParam>();
    if (!param) {
        LogError("CDeterminantWriteFileTask::GetProgress() nullptr == ptr_ftp_param");
        return progress;
    }
    LogInfo("CDeterminantWriteFileTask::GetProgress() , file name: %s, file guid: %s, file save path: %s.",
            param->GetVal_str_name().c_str(), param->GetVal_str_guid().c_str(),
            param->GetVal_str_file_path().c_str());
    if (!AddFolderProgress(param->vs_file_param_.str_export_file_path, progress))
        LogInfo("dir is not exists.%s", param->GetVal_str_file_path().c_str());
    return progress;
}

}  // namespace FetchyardBussiness
