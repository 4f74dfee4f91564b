#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Log.h"

namespace FetchyardBussiness {

using Zell::Base::Error::GetLastError;
using Zell::Base::Error::SetLastError;

bool CDeterminantWriteFileTask::DownloadAllTypeVideo()
{
    const auto param = GetDownloadTaskParam<DeterminantDownloadParam>();
    if (!param) {
        LogError("DownloadAllTypeVideo ptr_determinant_control_param is null!");
        return false;
    }
    const bool is_evidence = !param->str_evidence_param.empty();
    const ErrorCode before = GetLastError();
    LogInfo("DownloadPictures  code_now1 iFirstCode = %d  iSecondCode = %d", before.iFirstCode,
            before.iSecondCode);
    if (!FetchVideos(*param, is_evidence))
        return false;
    const ErrorCode after = GetLastError();
    LogInfo("DownloadPictures code_now2 iFirstCode = %d  iSecondCode = %d", after.iFirstCode,
            after.iSecondCode);
    if (param->vs_file_param_.vec_short_video.empty() || IsStopped() || IsDeleted())
        return true;
    if (!FetchStoredObjects(*param, is_evidence))
        return false;
    SetDownloadTaskParam(param, false);
    return true;
}

bool CDeterminantWriteFileTask::FetchVideos(DeterminantDownloadParam& param, bool is_evidence)
{
    VsFileParam& settings = param.vs_file_param_;
    if (settings.vec_video_download.empty() || IsStopped() || IsDeleted())
        return true;
    LogInfo("Start video download");
    if (!is_evidence)
        NotifyTaskState(ZellTaskKit::TranscodingBegin);
    ErrorCode error;
    const bool fetched =
        DownloadVideoFile(error, settings.vec_video_download, settings.is_continue_dowinloading);
    const bool goes_on = fetched || settings.is_continue_dowinloading;
    if (!goes_on)
        LogError("CDeterminantWriteFileTask::Exec()  video download filed");
    SetLastError(error);
    SetDownloadTaskParam(GetDownloadTaskParam<DeterminantDownloadParam>(), false);
    if (!is_evidence)
        NotifyTaskState(ZellTaskKit::TranscodingEnd);
    if (!goes_on)
        NotifyTaskState(is_evidence ? ZellTaskKit::UploadFailed : ZellTaskKit::Failed);
    return goes_on;
}

// This version has no way to the video plug-in, so the phase ends as it does wherever the plug-in is missing.
bool CDeterminantWriteFileTask::DownloadVideoFile(ErrorCode& error,
                                                  std::vector<VideoDownloadEntry>& /*videos*/,
                                                  bool /*is_continue*/)
{
    error = OwnError(kErrorBadInput);
    LogError("Get video download func failed.");
    return false;
}

}  // namespace FetchyardBussiness
