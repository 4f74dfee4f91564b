#pragma once

#include "FetchyardBussiness/Export.h"
#include "MultimediaComm/InfoOverlay.h"
#include "ZellTaskKit/DownloadTaskParam.h"

#include <memory>
#include <string>
#include <vector>

namespace FetchyardBussiness {

// How to fetch a recorded video.
struct VideoDownloadInfo
{
    int video_format = 0;            // 2 ".mp4", 1 ".avi"
    std::string str_video_password;  // as the video plug-in takes it
    std::string str_video_save_path_current;
    std::string str_video_save_name;
    std::string str_video_save_path;
    int file_format = 2;
    bool is_snap = true;
};

// Which video to fetch. Times are seconds since 1970.
struct VideoCameraInfo
{
    int camera_id = -1;
    int site_id = 0;
    int device_id = -1;
    int device_type = -1;
    long long begin_time = 0;
    long long end_time = 0;
};

// Record of a video download. A copy shares the overlay.
struct FETCHYARD_API VideoTaskParam : public ZellTaskKit::CDownloadTaskParam
{
    VideoTaskParam();
    VideoTaskParam(const VideoTaskParam& other);
    VideoTaskParam& operator=(const VideoTaskParam& other);
    ~VideoTaskParam() override;

    std::vector<std::string> video_requests;  // texts for the video plug-in, one download each
    VideoDownloadInfo download_info;          // this and the two below are for exports
    VideoCameraInfo camera_info;
    std::shared_ptr<Zell::MultimediaComm::InfoOverlay> ptr_info_overlay;
};

// Finds what other plug-ins of the client export. Of the library's inside; any thread.
class CToolFunc
{
public:
    // The module handle of a loaded plug-in; null, with a line in the log, if the client does not know the
    // id.
    static void* GetPluginHandleImpl(const std::string& plugin_id);
    // The address of a function that the plug-in exports, for the caller to cast; null, with a line in the
    // log, if there is no such plug-in or no such function.
    static void* GetPluginTaskFunc(const std::string& plugin_id, const std::string& func_name);
};

}  // namespace FetchyardBussiness
