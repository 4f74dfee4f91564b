#pragma once

// Ids of the client's plug-ins and the names by which others call them.
namespace FetchyardBussiness {

namespace fetchyard_plugin {

// What the plug-in around this library offers to others; only the id is used here, as the owner of tasks.
constexpr char kId[] = "fetchyard.c";
constexpr char kResumeDownloadTask[] = "ResumeDownloadTask";
constexpr char kPushDownloadTask[] = "PushDownloadTask";
constexpr char kHasPermission[] = "HasPermission";
constexpr char kJumpToPlugin[] = "JumpToPlugin";
constexpr char kGetAllTaskBaseInfo[] = "GetAllTaskBaseInfo";
constexpr char kControlTask[] = "ControlTask";
constexpr char kRegisterMessageCallback[] = "RegisterMessageCallback";

}  // namespace fetchyard_plugin

namespace video_plugin {

constexpr char kId[] = "clipvault.c";
constexpr char kStartDownloadVideoFile[] = "StartDownloadVideoFile";
constexpr char kGetVideoDownloadedSize[] = "GetVideoDownloadedSize";
constexpr char kStopDownloadVideoFile[] = "StopDownloadVideoFile";
constexpr char kRemoveDownloader[] = "RemoveDownloader";

}  // namespace video_plugin
}  // namespace FetchyardBussiness
