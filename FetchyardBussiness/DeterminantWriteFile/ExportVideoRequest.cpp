#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/Log.h"
#include "ZellBase/Util.h"
#include "ZellNetLink/RapidJsonProto.h"

namespace FetchyardBussiness {

using Zell::MultimediaComm::InfoOverlay;
using ZellNetLink::CRapidJsonProto;

namespace {

constexpr int kNone = -1;
constexpr int kCameraResource = 1001;
constexpr int kAvi = 1;
constexpr int kMp4 = 2;
constexpr int kFetched = 2;  // ResourceDownloadStateType

bool IsBodyWorn(int device_type)
{
    return device_type == 2002 || device_type == 2008;
}

bool IsToBeStamped(const std::shared_ptr<InfoOverlay>& overlay)
{
    return overlay && overlay->IsHandleAvailable() && overlay->GetInfoOverlayType() != kNone;
}

void WriteDownload(CRapidJsonProto& request, const VideoTaskParam& video)
{
    const std::string path = "/DownloadVideoFileRequest/DownloadParam";
    const VideoDownloadInfo& info = video.download_info;
    request.set_v(path + "/DownloadType", IsBodyWorn(video.camera_info.device_type) ? 1 : 0);
    request.set_v(path + "/VideoFormat", info.video_format);
    if (!info.str_video_password.empty())
        request.set_v(path + "/Password", info.str_video_password);
    request.set_v(path + "/CustomFilePath", info.str_video_save_path);
    request.set_bool_v(path + "/IsSnap", info.is_snap);
    if (!IsToBeStamped(video.ptr_info_overlay))
        return;
    request.set_bool_v(path + "/IsNeedPlatformWatermark", false);
    // Stamping works on mp4; the result goes back to avi.
    if (info.video_format == kAvi)
        request.set_v(path + "/VideoFormat", kMp4);
}

}  // namespace

// The guid is renewed for each request, so that a stop reaches just this download.
std::string CDeterminantWriteFileTask::CreateVideoDownloadParm(const VideoTaskParam& video)
{
    std::string guid;
    {
        const std::lock_guard<std::mutex> lock(video_guid_mutex);
        video_download_guid = Zell::Base::GuidUtil::CreateGuid();
        guid = video_download_guid;
    }
    const VideoCameraInfo& camera = video.camera_info;
    CRapidJsonProto request;
    request.set_v("/DownloadVideoFileRequest/GUID", guid);
    WriteDownload(request, video);
    const std::string path = "/DownloadVideoFileRequest/ResourceParam[1]";
    const bool is_device = camera.device_type != kNone;
    if (!is_device)
        LogInfo("CDeterminantWriteFileTask::CreateVideoDownloadParm device_type == -1");
    request.set_v(path + "/ResourceID", std::to_string(is_device ? camera.device_id : camera.camera_id));
    request.set_v(path + "/ResourceType", is_device ? camera.device_type : kCameraResource);
    request.set_v(path + "/SiteID", std::to_string(camera.site_id));
    request.set_bool_v(path + "/IsCameraNO", camera.site_id != 0);
    // The record class has 32 bits.
    request.set_v(path + "/DownloadTime[1]/StartTime", static_cast<int>(camera.begin_time));
    request.set_v(path + "/DownloadTime[1]/EndTime", static_cast<int>(camera.end_time));
    request.set_v(path + "/CustomFileName", video.download_info.str_video_save_name);
    return request.get_str(0);
}

bool CDeterminantWriteFileTask::AnalyzeVideoDownloadResult(ErrorCode& error, std::string file_name,
                                                           const std::string& response)
{
    CRapidJsonProto answer;
    answer.set_str(response);
    const int module = answer.get_int_v("/Response/ErrorModule", kNone);
    const int code = answer.get_int_v("/Response/ErrorCode", kNone);
    if (response.empty() || module != 0 || code != 0) {
        error = ErrorCode(2, module, code);
        LogError("video Download result, ErrorModule =[%d], ErrorCode =[%d]", module, code);
        InsertFailure(file_name, ReasonText(error), error);
        return false;
    }
    const int count = answer.get_cnt("/Response/ResourceDownloadState");
    for (int number = 1; number <= count; ++number) {
        const std::string path = "/Response/ResourceDownloadState[" + std::to_string(number) + "]";
        const std::string resource = answer.get_v(path + "/ResourceID", std::string());
        const int state = answer.get_int_v(path + "/ResourceDownloadStateType", kNone);
        const int resource_module = answer.get_int_v(path + "/ErrorModule", kNone);
        const int resource_code = answer.get_int_v(path + "/ErrorCode", kNone);
        if (state == kFetched && resource_module == 0 && resource_code == 0)
            return true;
        error = ErrorCode(2, resource_module, resource_code);
        LogError("video Download Faile !!!, CamID  = [%s] ErrorModule =[%d], ErrorCode =[%d]",
                 resource.c_str(), resource_module, resource_code);
        InsertFailure(file_name, ReasonText(error), error);
    }
    return false;
}

}  // namespace FetchyardBussiness
