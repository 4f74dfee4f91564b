#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/ReportExportRequests.h"
#include "ZellTaskKit/ClientServices.h"

namespace FetchyardBussiness::details {

using Zell::MultimediaComm::InfoOverlay;
using Zell::MultimediaComm::InfoOverlayLineArray;

namespace {

constexpr int kDefaultFormat = 2;

// A folder of its own below the export folder, or the export folder itself.
std::string ItemFolder(const RequestReader& item, const VsFileParam& settings)
{
    const std::string name = item.Text("FolderName");
    return name.empty() ? settings.str_export_file_path : settings.str_export_file_path + name + "/";
}

// The second picture of a name in a folder gets "(2)", the third "(3)". A changed name is not entered, so a
// later picture that is called so from the start collides with it.
std::string UniqueName(const std::string& folder, const std::string& name, std::map<std::string, int>& used)
{
    const auto [entry, is_new] = used.emplace(folder + name, 1);
    if (is_new)
        return name;
    ++entry->second;
    return name + "(" + std::to_string(entry->second) + ")";
}

ImageItem ReadPicture(const RequestReader& element)
{
    ImageItem item;
    item.save_cache = element.NumberFlag("GetFromCache");
    item.image_url = element.Text("Imageurl");
    item.workstation_id = element.Number("WorkStation");
    item.access_type = element.Number("AccessType");
    item.image_type = element.Number("Type");
    item.person_id = element.Number("PersonId");
    return item;
}

InfoOverlayLineArray ReadOverlayLine(const RequestReader& element)
{
    InfoOverlayLineArray line;
    line.SetFontSize(element.Number("FontSettings/Size"));
    line.SetColorRGB({element.Number("FontSettings/Color/Red"), element.Number("FontSettings/Color/Green"),
                      element.Number("FontSettings/Color/Blue")});
    line.SetTransparencyNum(element.Number("FontSettings/Transparency"));
    line.SetContentStr(element.Text("Content"));
    line.SetPosXType(element.Number("PosXType"));
    line.SetPosX(element.Number("PosX"));
    line.SetPosYType(element.Number("PosYType"));
    line.SetPosY(element.Number("PosY"));
    line.SetBeginMilliSecond(element.Number("BeginMilliSecond"));
    line.SetEndMilliSecond(element.Number("EndMilliSecond"));
    return line;
}

// Every video has an overlay object; one that the request does not name is of type -1 and has no lines.
std::shared_ptr<InfoOverlay> ReadOverlay(const RequestReader& video)
{
    auto overlay = std::make_shared<InfoOverlay>();
    const RequestReader element = video.Below("InfoOverlay");
    overlay->SetInfoOverlayType(element.Number("OverlayType"));
    overlay->SetInfoOverlayLineArrayType(element.Number("OverlayLineArray/LineArrayType"));
    std::vector<InfoOverlayLineArray> lines;
    const int count = element.Count("OverlayLineArray/ContentLine");
    lines.reserve(static_cast<std::size_t>(count));
    // The one list that is addressed by bare numbers, which count from 0.
    for (int index = 0; index < count; ++index)
        lines.push_back(
            ReadOverlayLine(element.Below("OverlayLineArray/ContentLine/" + std::to_string(index))));
    overlay->SetInfoOverlayLineArrayVec(lines);
    return overlay;
}

void ReadVideoSettings(const RequestReader& element, VideoTaskParam& video)
{
    VideoDownloadInfo& info = video.download_info;
    info.video_format = element.NumberOr("VideoFormat", kDefaultFormat);
    info.file_format = element.NumberOr("FileFormat", kDefaultFormat);
    info.str_video_password = element.Text("VideoPassword");
    info.is_snap = element.NumberFlag("IsSnap");
    info.str_video_save_name = element.Text("ExportFileName");

    VideoCameraInfo& camera = video.camera_info;
    camera.camera_id = element.Number("CameraID");
    camera.site_id = element.Number("WorkstationID");
    camera.device_id = element.Number("DeviceID");
    camera.device_type = element.Number("DeviceType");
    auto& times = ZellTaskKit::CTimeZoneManager::Instance();
    camera.begin_time = times.ISOTimeToTimeT(element.Text("BeginTime"));
    camera.end_time = times.ISOTimeToTimeT(element.Text("EndTime"));
}

// A folder that can't be made is replaced by the export folder, for videos only.
std::string VideoFolder(const RequestReader& element, const VsFileParam& settings)
{
    std::string path = ItemFolder(element, settings);
    if (FolderExists(path))
        return path;
    const bool made = MakeFolder(path);
    LogInfo(" CDownloadBussinessManager::AddDownloadCommTask dir.mkpath state = %d, path = %s  ", made,
            path.c_str());
    if (FolderExists(path))
        return path;
    LogInfo(" CDownloadBussinessManager::AddDownloadCommTask dir.mkpath two failed , path = %s  ",
            path.c_str());
    return settings.str_export_file_path;
}

std::string StoredObjectFolder(const RequestReader& element, const VsFileParam& settings)
{
    std::string path = element.Text("SavePath");
    if (path.empty())
        path = settings.str_export_file_path;
    const std::string folder = element.Text("FolderName");
    if (!folder.empty())
        path += "/" + folder + "/";
    if (!FolderExists(path)) {
        const bool made = MakeFolder(path);
        LogInfo(
            " CDownloadBussinessManager::AddDownloadCommTask ShortVideoExportParam   dir.mkpath state = %d, "
            "save_path = %s  ",
            made, path.c_str());
    }
    return path;
}

}  // namespace

void ReadPictures(const RequestReader& data, VsFileParam& settings)
{
    std::map<std::string, int> used_names;
    const int count = data.Count("DownloadFiles/ImageDownload");
    for (int number = 1; number <= count; ++number) {
        const RequestReader element = data.Element("DownloadFiles/ImageDownload", number);
        ImageDownloadEntry entry;
        entry.image.image_items.push_back(ReadPicture(element));
        const std::string folder = ItemFolder(element, settings);
        entry.image.SetVal_str_file_path(folder);
        if (!FolderExists(folder)) {
            const bool made = MakeFolder(folder);
            LogInfo(
                " CDownloadBussinessManager::AddDownloadCommTask dir.mkpath state = %d, "
                "image.str_file_path = %s  ",
                made, folder.c_str());
        }
        std::string name = element.Text("ImageName");
        if (name.empty())
            name = std::to_string(number);
        entry.image.SetVal_str_name(UniqueName(folder, name, used_names) + ".jpg");
        settings.vec_image_download.push_back(std::move(entry));
    }
}

void ReadVideos(const RequestReader& data, VsFileParam& settings)
{
    const int count = data.Count("DownloadFiles/VideoDownload");
    for (int number = 1; number <= count; ++number) {
        const RequestReader element = data.Element("DownloadFiles/VideoDownload", number);
        VideoDownloadEntry entry;
        VideoTaskParam& video = entry.video;
        ReadVideoSettings(element, video);
        const std::string path = VideoFolder(element, settings);
        video.download_info.str_video_save_path = path;
        video.download_info.str_video_save_path_current = path;
        video.SetVal_str_file_path(path);
        video.ptr_info_overlay = ReadOverlay(element);
        settings.map_site_camera[video.camera_info.site_id].push_back(video.camera_info.camera_id);
        settings.vec_video_download.push_back(std::move(entry));
    }
}

void ReadStoredObjects(const RequestReader& data, VsFileParam& settings)
{
    const int count = data.Count("DownloadFiles/ObjectStorageDownload");
    for (int number = 1; number <= count; ++number) {
        const RequestReader element = data.Element("DownloadFiles/ObjectStorageDownload", number);
        ShortVideoEntry entry;
        entry.clip.EnumStoragePlace = element.Number("StoragePlace");
        entry.clip.str_shortvideo_url = element.Text("FileUrl");
        entry.clip.file_name = element.Text("FileName");
        entry.clip.EnumUpLoadType = element.Number("UploadType");
        entry.clip.save_path = StoredObjectFolder(element, settings);
        settings.vec_short_video.push_back(std::move(entry));
    }
}

}  // namespace FetchyardBussiness::details
