#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"
#include "FetchyardBussiness/DeterminantWriteFile/ResumeDocument.h"
#include "FetchyardBussiness/Log.h"

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Writer and reader of the resume record do not mirror each other in places, and element names are misspelt
// in places; both are part of the format, which other programs keep.
namespace FetchyardBussiness {

using Zell::MultimediaComm::InfoOverlay;
using Zell::MultimediaComm::InfoOverlayLineArray;

namespace {

ResumeElement PictureElement(const ImageDownloadEntry& entry)
{
    ResumeElement element("OneImage");
    element.Flag("IsHasDownload", entry.is_has_download);
    if (!entry.image.image_items.empty()) {
        const ImageItem& item = entry.image.image_items.front();
        element.Flag("IsSaveCache", item.save_cache)
            .Text("ImageUrl", item.image_url)
            .Number("WorkStataion", item.workstation_id)
            .Number("AccessType", item.access_type)
            .Number("ImageType", item.image_type)
            .Unsigned("PersonId", item.person_id);
    }
    element.Text("SaveFileDir", entry.image.GetVal_str_file_path());
    return element;
}

ResumeElement OverlayLineElement(const InfoOverlayLineArray& line)
{
    const std::array<int, 3> rgb = line.GetColorRGB();
    ResumeElement color("Color");
    color.Number("Red", rgb[0]).Number("Green", rgb[1]).Number("Blue", rgb[2]);
    ResumeElement font("FontSettings");
    font.Number("Size", line.GetFontSize()).Child(color).Number("Transparency", line.GetTransparencyNum());
    ResumeElement element("ContentLine");
    element.Child(font)
        .Text("Content", line.GetContentStr())
        .Number("PosXType", line.GetPosXType())
        .Number("PosX", line.GetPosX())
        .Number("PosYType", line.GetPosYType())
        .Number("PosY", line.GetPosY())
        .Number("BeginMilliSecond", line.GetBeginMilliSecond())
        .Number("EndMilliSecond", line.GetEndMilliSecond());
    return element;
}

ResumeElement OverlayElement(const InfoOverlay& overlay)
{
    ResumeElement lines("OverlayLineArray");
    lines.Number("LineArrayType", overlay.GetInfoOverlayLineArrayType());
    for (const InfoOverlayLineArray& line : overlay.GetInfoOverlayLineArrayVec())
        lines.Child(OverlayLineElement(line));
    ResumeElement element("InfoOverlay");
    element.Number("OverlayType", overlay.GetInfoOverlayType()).Child(lines);
    return element;
}

ResumeElement VideoElement(const VideoDownloadEntry& entry)
{
    const VideoDownloadInfo& info = entry.video.download_info;
    const VideoCameraInfo& camera = entry.video.camera_info;
    ResumeElement element("OneVideo");
    element.Flag("IsHasDownload", entry.is_has_download)
        .Number("VideoFormat", info.video_format)
        .Number("FileFormat", info.file_format)
        .Flag("IsSnap", info.is_snap)
        .Text("VideoSavePathCurrent", info.str_video_save_path_current)
        .Text("VideoSaveName", info.str_video_save_name)
        .Text("VideoSavePath", info.str_video_save_path)
        .Number("CameraID", camera.camera_id)
        .Number("SiteID", camera.site_id)
        .Time("BeginTime", camera.begin_time)
        .Time("EndTime", camera.end_time);
    if (entry.video.ptr_info_overlay)
        element.Child(OverlayElement(*entry.video.ptr_info_overlay));
    return element;
}

ResumeElement StoredObjectElement(const ShortVideoEntry& entry)
{
    ResumeElement element("ShortVideo");
    element.Flag("IsHasDownload", entry.is_has_download)
        .Text("FileName", entry.clip.file_name)
        .Text("FilePath", entry.clip.save_path)
        .Text("FileUrl", entry.clip.str_shortvideo_url)
        .Number("UrlType", entry.clip.EnumUpLoadType)
        .Number("EnumStoragePlace", entry.clip.EnumStoragePlace);
    return element;
}

ResumeElement DeviceLogElement(int file_id, const std::pair<int, std::string>& file)
{
    ResumeElement element("DevideLog");
    element.Number("FileId", file_id).Number("DeviceId", file.first).Text("FileName", file.second);
    return element;
}

void AddSettings(const VsFileParam& settings, ResumeElement& root)
{
    // The account data of a password check never reaches the record on disk.
    const std::string& condition =
        settings.check_password_request ? settings.str_received_condition : settings.str_request_condition;
    root.Number("TaskParamType", kCompositeExportRecord)
        .Number("FileOperateType", settings.file_operate_type)
        .Number("ExportType", settings.export_file_type)
        .Text("PdfPageSize", settings.pdf_page_size)
        .Number("PdfPageOrientaion", settings.pdf_page_orintation)
        .Text("RequestMethod", settings.str_request_method)
        .Text("RequestAPI", settings.str_request_api)
        .Text("RequestCondition", condition)
        .Number("RequestSiteId", settings.request_site_id)
        .Flag("CheckPasswordRequest", settings.check_password_request)
        .Number("PasswordType", settings.password_type)
        .Number("WebLoginModel", settings.web_login_model)
        .Text("ExportFileName", settings.str_export_file_name)
        .Text("ExportFilePath", settings.str_export_file_path)
        .Number("CurrentPage", settings.file_current_page)
        .Flag("TotalPageIsFinished", settings.file_total_page_is_finished)
        .Flag("RestartIsNeedDownload", settings.restart_is_need_download)
        .Flag("IsServerDataToWrite", settings.is_server_data_to_write);
}

// A list without entries has no element at all.
template <typename Entries, typename MakeElement>
void AddList(const std::string& name, const Entries& entries, MakeElement make_element, ResumeElement& root)
{
    if (entries.empty())
        return;
    ResumeElement list(name);
    for (const auto& entry : entries)
        list.Child(make_element(entry));
    root.Child(list);
}

void ReadSettings(const ResumeReader& root, VsFileParam& settings)
{
    settings.file_operate_type = root.Number("FileOperateType");
    settings.export_file_type = root.Number("ExportType");
    settings.pdf_page_size = root.Text("PdfPageSize");
    settings.pdf_page_orintation = root.Number("PdfPageOrientaion");
    settings.str_request_method = root.Text("RequestMethod");
    settings.str_request_api = root.Text("RequestAPI");
    settings.str_request_condition = root.Text("RequestCondition");
    settings.request_site_id = root.Number("RequestSiteId");
    settings.check_password_request = root.Number("CheckPasswordRequest") == 1;
    settings.password_type = root.Number("PasswordType");
    settings.web_login_model = root.Number("WebLoginModel");
    settings.is_resumed = true;
    settings.str_export_file_name = root.Text("ExportFileName");
    settings.str_export_file_path = root.Text("ExportFilePath");
    settings.file_current_page = root.Number("CurrentPage");
    settings.file_total_page_is_finished = root.Flag("TotalPageIsFinished");
    settings.restart_is_need_download = root.Flag("RestartIsNeedDownload");
    settings.is_server_data_to_write = root.Flag("IsServerDataToWrite");
    // Never written, so a resumed export goes on after a failed item.
    settings.is_continue_dowinloading = root.Flag("IsContinueDowinloading");
}

void ReadPictures(const ResumeReader& root, VsFileParam& settings)
{
    const int count = root.Count("ImageDownloadList/OneImage");
    for (int number = 1; number <= count; ++number) {
        const ResumeReader element = root.Entry("ImageDownloadList/OneImage", number);
        ImageItem item;
        item.save_cache = element.Flag("IsSaveCache");
        item.image_url = element.Text("ImageUrl");
        item.workstation_id = element.Number("WorkStataion");
        item.access_type = element.Number("AccessType");
        item.image_type = element.Number("ImageType");
        item.person_id = element.Number("PersonId");
        ImageDownloadEntry entry;
        entry.image.SetVal_str_file_path(element.Text("SaveFileDir"));
        entry.image.image_items.push_back(std::move(item));
        entry.is_has_download = element.Flag("IsHasDownload");
        settings.vec_image_download.push_back(std::move(entry));
    }
}

InfoOverlayLineArray ReadOverlayLine(const ResumeReader& element)
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

// A video has an overlay object even if the record names none.
std::shared_ptr<InfoOverlay> ReadOverlay(const ResumeReader& video)
{
    const ResumeReader element = video.Below("InfoOverlay");
    auto overlay = std::make_shared<InfoOverlay>();
    overlay->SetInfoOverlayType(element.Number("OverlayType"));
    overlay->SetInfoOverlayLineArrayType(element.Number("OverlayLineArray/LineArrayType"));
    std::vector<InfoOverlayLineArray> lines;
    const int count = element.Count("OverlayLineArray/ContentLine");
    for (int number = 1; number <= count; ++number)
        lines.push_back(ReadOverlayLine(element.Entry("OverlayLineArray/ContentLine", number)));
    overlay->SetInfoOverlayLineArrayVec(lines);
    return overlay;
}

void ReadVideos(const ResumeReader& root, VsFileParam& settings)
{
    const int count = root.Count("VideoDownloadList/OneVideo");
    for (int number = 1; number <= count; ++number) {
        const ResumeReader element = root.Entry("VideoDownloadList/OneVideo", number);
        VideoDownloadEntry entry;
        VideoDownloadInfo& info = entry.video.download_info;
        info.video_format = element.Number("VideoFormat");
        info.file_format = element.Number("FileFormat");
        info.is_snap = element.Flag("IsSnap");
        info.str_video_save_path_current = element.Text("VideoSavePathCurrent");
        info.str_video_save_name = element.Text("VideoSaveName");
        info.str_video_save_path = element.Text("VideoSavePath");
        VideoCameraInfo& camera = entry.video.camera_info;
        camera.camera_id = element.Number("CameraID");
        camera.site_id = element.Number("SiteID");
        // Written with 64 bits, read with 32.
        camera.begin_time = element.Number("BeginTime");
        camera.end_time = element.Number("EndTime");
        entry.video.ptr_info_overlay = ReadOverlay(element);
        entry.is_has_download = element.Flag("IsHasDownload");
        settings.map_site_camera[camera.site_id].push_back(camera.camera_id);
        settings.vec_video_download.push_back(std::move(entry));
    }
}

void ReadStoredObjects(const ResumeReader& root, VsFileParam& settings)
{
    const int count = root.Count("ShortVideoExportParam/ShortVideo");
    for (int number = 1; number <= count; ++number) {
        const ResumeReader element = root.Entry("ShortVideoExportParam/ShortVideo", number);
        ShortVideoEntry entry;
        entry.clip.file_name = element.Text("FileName");
        entry.clip.save_path = element.Text("FilePath");
        entry.clip.str_shortvideo_url = element.Text("FileUrl");
        entry.clip.EnumUpLoadType = element.Number("UrlType");
        entry.clip.EnumStoragePlace = element.Number("EnumStoragePlace");
        entry.is_has_download = element.Flag("IsHasDownload");
        settings.vec_short_video.push_back(std::move(entry));
    }
}

void ReadDeviceLogs(const ResumeReader& root, VsFileParam& settings)
{
    const int count = root.Count("HandDevideLogExportParam/DevideLog");
    for (int number = 1; number <= count; ++number) {
        const ResumeReader element = root.Entry("HandDevideLogExportParam/DevideLog", number);
        const int device = element.Number("DeviceId");
        settings.map_device_log.emplace(element.Number("FileId"),
                                        std::make_pair(device, element.Text("FileName")));
    }
}

}  // namespace

std::string DeterminantDownloadParam::CreateResumeXml()
{
    LogInfo("DeterminantDownloadParam::CreateResumeXml");
    const Zell::Base::Error::ErrorCode error = GetVal_error_();
    ResumeElement root(kResumeRoot);
    AddSettings(vs_file_param_, root);
    root.Text("ReserverData", GetVal_reserve_data())
        .Number("SetValErroriFirstCode", error.iFirstCode)
        .Number("SetValErroriSecondCode", error.iSecondCode);
    AddList("ImageDownloadList", vs_file_param_.vec_image_download, PictureElement, root);
    AddList("VideoDownloadList", vs_file_param_.vec_video_download, VideoElement, root);
    AddList("ShortVideoExportParam", vs_file_param_.vec_short_video, StoredObjectElement, root);
    AddList(
        "HandDevideLogExportParam", vs_file_param_.map_device_log,
        [](const auto& log) { return DeviceLogElement(log.first, log.second); }, root);
    return root.Record();
}

// Adds to the lists as they are: the record is expected to be fresh.
bool DeterminantDownloadParam::ResumeParamFromXml()
{
    LogInfo("DeterminantDownloadParam::ResumeParamFromXml");
    ZellNetLink::CXmlProto document;
    if (!OpenResumeRecord(GetVal_str_resume_xml(), document))
        return false;
    const ResumeReader root(document, kResumePrefix);
    ReadSettings(root, vs_file_param_);
    SetIsExportSensitiveInfo(vs_file_param_.check_password_request);
    SetVal_reserve_data(root.Text("ReserverData"));
    const int error_module = root.Number("SetValErroriFirstCode");
    SetVal_error_(Zell::Base::Error::ErrorCode(error_module, root.Number("SetValErroriSecondCode")));
    ReadPictures(root, vs_file_param_);
    ReadVideos(root, vs_file_param_);
    ReadStoredObjects(root, vs_file_param_);
    ReadDeviceLogs(root, vs_file_param_);
    return true;
}

}  // namespace FetchyardBussiness
