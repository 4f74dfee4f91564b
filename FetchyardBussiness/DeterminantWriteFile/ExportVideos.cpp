#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/EvidenceExport.h"
#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/PluginNames.h"

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
    bool ignored_flag = false;
    const bool fetched = DownloadVideoFile(error, settings.vec_video_download, &ignored_flag,
                                           settings.is_continue_dowinloading);
    const bool goes_on = fetched || settings.is_continue_dowinloading;
    if (!goes_on)
        LogError("CDeterminantWriteFileTask::Exec()  video download filed");
    SetLastError(error);
    SetDownloadTaskParam(GetDownloadTaskParam<DeterminantDownloadParam>(), false);
    if (!is_evidence)
        NotifyTaskState(ZellTaskKit::TranscodingEnd);
    if (!goes_on)
        NotifyTaskState(StateOfExport(is_evidence, ZellTaskKit::Failed));
    return goes_on;
}

namespace {

using StartFunction = bool (*)(const std::string& first, const std::string& request, std::string& response);

// A plug-in that throws has failed, without a word of its own.
bool CallStart(StartFunction start, const std::string& request, std::string& response)
{
    try {
        return start(std::string(), request, response);
    } catch (...) {
        LogError("%s threw an exception", video_plugin::kStartDownloadVideoFile);
        response.clear();
        return false;
    }
}

}  // namespace

// One of the plug-in's functions after the other; the first that is missing is told in the log.
void* CDeterminantWriteFileTask::ResolveVideoPlugin()
{
    const auto find = [](const char* name) { return CToolFunc::GetPluginTaskFunc(video_plugin::kId, name); };
    void* const start = find(video_plugin::kStartDownloadVideoFile);
    if (start == nullptr) {
        LogError("Get video download func failed.");
        return nullptr;
    }
    void* const size = find(video_plugin::kGetVideoDownloadedSize);
    if (size == nullptr) {
        LogError("Get video size func failed.");
        return nullptr;
    }
    void* const stop = find(video_plugin::kStopDownloadVideoFile);
    if (stop == nullptr) {
        LogError("Get stop download video func failed.");
        return nullptr;
    }
    void* const remove = find(video_plugin::kRemoveDownloader);
    if (remove == nullptr) {
        LogError("Get Remove downloader func failed.");
        return nullptr;
    }
    const std::lock_guard<std::mutex> lock(video_guid_mutex);
    video_size_func = size;
    video_stop_func = reinterpret_cast<VideoGuidFunction>(stop);
    video_remove_func = reinterpret_cast<VideoGuidFunction>(remove);
    return start;
}

bool CDeterminantWriteFileTask::DownloadVideoFile(ErrorCode& error, std::vector<VideoDownloadEntry>& videos,
                                                  bool* /*ignored_flag*/, bool is_continue)
{
    b_downloading_video_.store(true, std::memory_order_relaxed);
    void* const start = ResolveVideoPlugin();
    if (start == nullptr) {
        error = OwnError(kErrorBadInput);
        return false;
    }
    LogInfo("CDeterminantWriteFileTask::DownloadVideoFile videoTask.size()= %d",
            static_cast<int>(videos.size()));
    for (std::size_t index = 0; index < videos.size() && !IsStopped() && !IsDeleted(); ++index) {
        // The phase counts as running behind a failure too.
        if (!videos[index].is_has_download && !FetchVideo(start, videos[index], error, is_continue) &&
            !is_continue)
            return false;
    }
    b_downloading_video_.store(false, std::memory_order_relaxed);
    LogInfo("CDeterminantWriteFileTask::DownloadVideoFile end");
    return true;
}

// False if the video has failed.
bool CDeterminantWriteFileTask::FetchVideo(void* start, VideoDownloadEntry& entry, ErrorCode& error,
                                           bool is_continue)
{
    VideoTaskParam& video = entry.video;
    const std::string request = CreateVideoDownloadParm(video);
    // A stop that came before this guid was known was meant for it all the same; the plug-in remembers it.
    if (IsStopped() || IsDeleted())
        TellVideoPlugin(video_stop_func);
    std::string response;
    if (!CallStart(reinterpret_cast<StartFunction>(start), request, response)) {
        ReportFailedVideo(video, response, error);
        if (!is_continue)
            LogError("Call video plugin push video func failed. is_continue = %d", is_continue);
        return false;
    }
    if (!VideoInfoOverlayStart(video)) {
        DeleteVideoFiles(video);
        error = OwnError(kErrorBadInput);
        InsertFailure(video.download_info.str_video_save_name, ReasonText(error), error);
        LogError("[DownloadVideoFile]video overlay info fail");
        return false;
    }
    // One that was being stopped is fetched anew by the next run.
    if (IsStopped())
        DeleteVideoFiles(video);
    else
        entry.is_has_download = true;
    return true;
}

void CDeterminantWriteFileTask::ReportFailedVideo(const VideoTaskParam& video, const std::string& response,
                                                  ErrorCode& error)
{
    const std::string& name = video.download_info.str_video_save_name;
    LogError("Call video plugin push video func failed. file_name = %s", name.c_str());
    AnalyzeVideoDownloadResult(error, name, response);
    TellVideoPlugin(video_remove_func);
}

// The plug-in's functions only signal, so the lock is not held for long.
void CDeterminantWriteFileTask::TellVideoPlugin(const VideoGuidFunction& function)
{
    const std::lock_guard<std::mutex> lock(video_guid_mutex);
    if (function == nullptr || video_download_guid.empty())
        return;
    try {
        function(video_download_guid);
    } catch (...) {
        LogError("the video plug-in threw an exception");
    }
}

}  // namespace FetchyardBussiness
