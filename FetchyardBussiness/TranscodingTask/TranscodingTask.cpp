#include "FetchyardBussiness/TranscodingTask/TranscodingTask.h"

#include "FetchyardBussiness/DeterminantWriteFile/FolderProgress.h"
#include "FetchyardBussiness/Log.h"
#include "MultimediaComm/PlayLocalFileEx.h"
#include "ZellBase/FileSystem.h"
#include "ZellPlayback/PlatformWatermark.h"
#include "ZellTaskKit/ClientServices.h"

#include <algorithm>

namespace FetchyardBussiness {

namespace FileSystem = Zell::Base::FileSystem;
using FetchyardLogical::TrasncodingFile;

void CTranscodingTask::Exec()
{
    Begin();
    NotifyTaskState(ZellTaskKit::Downloading);
    LogInfo("Start transcoding video file.");
    const auto param = GetDownloadTaskParam<TranscodingParam>();
    if (!param) {
        NotifyTaskState(ZellTaskKit::Failed);
        LogError("transcoding video file failed. convert video param failed.");
        return;
    }
    NotifyTaskState(ZellTaskKit::TranscodingBegin);
    for (const TrasncodingFile& file : param->transcode_files) {
        const Outcome outcome = TranscodeFile(file);
        if (outcome == Outcome::Failed)
            return;
        if (outcome == Outcome::Stopped)
            break;
    }
    if (stop_flag) {
        NotifyTaskState(ZellTaskKit::Stopped);
        return;
    }
    NotifyTaskState(ZellTaskKit::TranscodingEnd);
    NotifyTaskState(ZellTaskKit::Finished);
}

// A stop that races with this is lost, or finds no file and is seen at the first one.
void CTranscodingTask::Begin()
{
    const std::lock_guard<std::mutex> lock(files_mutex);
    working_files.clear();
    stop_flag = false;
}

CTranscodingTask::Outcome CTranscodingTask::TranscodeFile(const TrasncodingFile& file)
{
    constexpr int stopped = 4;
    LogInfo("start to transcode file:%s, save file to:%s", file.source_file.c_str(), file.save_file.c_str());
    {
        const std::lock_guard<std::mutex> lock(files_mutex);
        working_files.push_back(file.source_file);
    }
    if (stop_flag)
        return Outcome::Stopped;
    const int ret = AddPlatformWatermarkToVideoFile(file.source_file, file.watermark_text,
                                                    file.watermark_kind, file.save_file);
    if (ret == stopped) {
        LogWarning("has already stopped add watermark.");
        return Outcome::Stopped;
    }
    // Results that the library does not name count as success.
    if (ret == 1 || ret == 2 || ret == 3 || ret == 5) {
        const Zell::Base::Error::ErrorCode error = Zell::Base::Error::GetLastError();
        LogError("Add video watermark failed. ret: %d, first code: %d, secode code: %d.", ret,
                 error.iFirstCode, error.iSecondCode);
        NotifyTaskState(ZellTaskKit::Failed);
        return Outcome::Failed;
    }
    LogInfo("Add watermark succ.");
    FinishFile(file);
    LogInfo("transcode file succ.");
    return Outcome::Done;
}

// What goes wrong here does not fail the task.
void CTranscodingTask::FinishFile(const TrasncodingFile& file)
{
    if (file.b_delete_source && FileSystem::DeleteFileW(file.source_file.c_str()) != 0)
        LogError("Delete file failed. file:%s", file.source_file.c_str());
    if (!file.b_capture_image)
        return;
    const std::size_t dot = file.save_file.rfind('.');
    if (dot == std::string::npos || dot == 0)
        return;
    if (!CaptureImage(file.save_file.substr(0, dot + 1) + "jpg", file.save_file))
        LogError("Capture image failed. video path:%s", file.save_file.c_str());
}

bool CTranscodingTask::Stop()
{
    stop_flag = true;
    std::vector<std::string> files;
    {
        const std::lock_guard<std::mutex> lock(files_mutex);
        files = working_files;
    }
    for (const std::string& file : files)
        StopPlatformWatermarkToVideoFile(file);
    const std::lock_guard<std::mutex> lock(files_mutex);
    working_files.clear();
    return true;
}

bool CTranscodingTask::Suspend()
{
    return true;
}

bool CTranscodingTask::GrabPicture(const std::string& video_path, std::string& data)
{
    constexpr int attempts = 3;
    constexpr unsigned long pause = 100;  // milliseconds
    constexpr int jpeg = 1;
    Zell::MultimediaComm::CPlayLocalFileEx player;
    long port = -1;
    const bool opened = player.StartPlayLocalFile(port, video_path, nullptr, 0);
    if (!opened) {
        LogError("Failed to open the play file：%s, error code: %d", video_path.c_str(), opened);
        player.StopLocalFilePlay(port);
        return false;
    }
    if (player.GetFileTime(port) == static_cast<unsigned long>(-1)) {
        LogError("Clipe file failed.path:%s", video_path.c_str());
        player.StopLocalFilePlay(port);
        return false;
    }
    for (int attempt = 0; attempt < attempts; ++attempt) {
        ZellTaskKit::ZC_Sleep(pause);
        if (player.CaptureImage(data, port, jpeg))
            break;
    }
    player.StopLocalFilePlay(port);
    return true;
}

bool CTranscodingTask::CaptureImage(const std::string& image_path, const std::string& video_path)
{
    std::string data;
    if (!GrabPicture(video_path, data))
        return false;
    if (data.empty()) {
        LogError("Capture image failed.");
        return false;
    }
    void* file =
        FileSystem::OpenFile(image_path.c_str(), FileSystem::kOpenTruncate, FileSystem::kAttributesPlain);
    if (file == FileSystem::NoFile()) {
        LogError("Filed to Zell::Base::FileSystem::OpenFile.");
        return false;
    }
    unsigned int written = 0;
    const int result =
        FileSystem::WriteFile(file, data.data(), static_cast<unsigned int>(data.size()), &written);
    FileSystem::CloseFile(file);
    return result == 0;
}

ZellTaskKit::CDownloadProgress CTranscodingTask::GetProgress()
{
    ZellTaskKit::CDownloadProgress progress;
    const auto param = GetDownloadTaskParam<TranscodingParam>();
    if (!param) {
        LogError("transcoding video file failed. convert video param failed.");
        return progress;
    }
    const std::string folder = param->GetVal_str_file_path();
    // A result that is listed twice counts twice.
    const auto weight = [&param](const std::string& path) {
        const auto is_result = [&path](const TrasncodingFile& file) { return file.save_file == path; };
        return static_cast<unsigned int>(
            std::count_if(param->transcode_files.begin(), param->transcode_files.end(), is_result));
    };
    if (!AddFolderProgress(folder, progress, weight))
        LogError("dir is not exists.%s", folder.c_str());
    return progress;
}

}  // namespace FetchyardBussiness
