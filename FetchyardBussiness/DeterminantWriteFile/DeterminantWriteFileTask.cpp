#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"

namespace FetchyardBussiness {

CDeterminantWriteFileTask::CDeterminantWriteFileTask() = default;
CDeterminantWriteFileTask::~CDeterminantWriteFileTask() = default;

bool CDeterminantWriteFileTask::SetCommonData(const std::string& text)
{
    const std::lock_guard<std::mutex> lock(comm_data_mutex_);
    comm_data = text;
    return false;
}

std::string CDeterminantWriteFileTask::GetCommData()
{
    const std::lock_guard<std::mutex> lock(comm_data_mutex_);
    return comm_data;
}

bool CDeterminantWriteFileTask::Suspend()
{
    return true;
}

void CDeterminantWriteFileTask::RelatedCameraList(std::map<int, std::vector<int>>& cameras, ErrorCode& error)
{
    cameras = related_camera_map;
    error = ErrorCode(0, 0);
}

bool CDeterminantWriteFileTask::HasInfoOverlayVideo()
{
    constexpr int no_overlay = -1;
    const auto param = GetDownloadTaskParam<DeterminantDownloadParam>();
    if (!param)
        return false;
    for (const VideoDownloadEntry& entry : param->vs_file_param_.vec_video_download) {
        const auto& overlay = entry.video.ptr_info_overlay;
        if (overlay && overlay->GetInfoOverlayType() != no_overlay)
            return true;
    }
    return false;
}

}  // namespace FetchyardBussiness
