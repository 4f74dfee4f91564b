#include "support/VideoTest.h"

#include "Platform/Module.h"

#include <regex>

namespace contract {

using FetchyardBussiness::VideoDownloadEntry;

VideoTest::VideoTest()
{
    Settings().str_request_api = "";
    UsePlugin(VIDEO_PLUGIN_ALL);
}

void VideoTest::UsePlugin(const char* module)
{
    // It stays to the end of the process, as a client's does.
    std::string reason;
    void* const handle = ZellClientHost::LoadModule(module, reason);
    ASSERT_NE(handle, nullptr) << reason;
    fakes::TheScript().plugins["clipvault.c"] = handle;
}

VideoDownloadEntry& VideoTest::AddVideo(const std::string& name, int video_format)
{
    VideoDownloadEntry entry;
    entry.video.download_info.video_format = video_format;
    entry.video.download_info.str_video_save_name = name;
    entry.video.download_info.str_video_save_path = Folder() + "Alarm/";
    entry.video.download_info.str_video_save_path_current = Folder() + "Alarm/";
    entry.video.download_info.is_snap = false;
    entry.video.camera_info.camera_id = 5;
    entry.video.camera_info.begin_time = 1000;
    entry.video.camera_info.end_time = 2000;
    Settings().vec_video_download.push_back(entry);
    return Settings().vec_video_download.back();
}

void VideoTest::Stamp(VideoDownloadEntry& entry, int overlay_type)
{
    entry.video.ptr_info_overlay = std::make_shared<Zell::MultimediaComm::InfoOverlay>();
    entry.video.ptr_info_overlay->SetInfoOverlayType(overlay_type);
}

std::string VideoTest::Marks()
{
    std::string marks;
    for (const VideoDownloadEntry& entry : Settings().vec_video_download)
        marks += entry.is_has_download ? '+' : '-';
    return marks;
}

std::string VideoTest::Short(std::string trace)
{
    trace = std::regex_replace(trace, std::regex(R"((StartDownloadVideoFile "") \{[^\n]*)"), "$1");
    return std::regex_replace(trace, std::regex(R"(\d{4}/\d\d/\d\d \d\d:\d\d:\d\d)"), "<now>");
}

std::string VideoTest::Phase()
{
    const std::string trace = Short(Run());
    const std::size_t begin = trace.find("log3 Start video download");
    const std::size_t end = trace.find("log3 DownloadPictures code_now2");
    return "\n" + (end == std::string::npos ? trace.substr(begin) : trace.substr(begin, end - begin));
}

}  // namespace contract
