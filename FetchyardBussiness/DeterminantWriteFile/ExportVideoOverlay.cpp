#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/Log.h"
#include "MultimediaComm/VideoFormatTransfer.h"
#include "ZellAssetBook/SystermConfigManager.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Util.h"
#include "ZellTaskKit/ClientServices.h"

#include <QDateTime>

#include <new>

namespace FetchyardBussiness {

namespace FileSystem = Zell::Base::FileSystem;
using Zell::MultimediaComm::CVideoFormatTransfer;
using Zell::MultimediaComm::CWaterMarkParam;

namespace {

constexpr int kNoOverlay = -1;
constexpr int kAvi = 1;
constexpr int kMp4 = 2;

std::string Extension(int video_format)
{
    if (video_format == kMp4)
        return ".mp4";
    return video_format == kAvi ? ".avi" : "";
}

std::vector<std::string> WatermarkLines(const ZellAssetBook::CWaterMark& config)
{
    std::vector<std::string> lines;
    if (config.GetVal_b_enable_username()) {
        int number = 0;
        std::string name;
        std::string password;
        if (ZellTaskKit::CUserCommonManager::Instance().GetUserInfo(number, name, password))
            lines.push_back(name);
    }
    if (config.GetVal_b_enable_datatime())
        lines.push_back(
            QDateTime::currentDateTime().toString(QStringLiteral("yyyy/MM/dd hh:mm:ss")).toStdString());
    if (config.GetVal_b_enable_custom_content())
        lines.push_back(config.GetVal_custom_content());
    return lines;
}

// As it is configured at this moment, not when the export was asked for.
CWaterMarkParam PresentWatermark()
{
    const ZellAssetBook::CWaterMark config =
        ZellAssetBook::COXTSystermConfigManager::Instance().GetWaterMarkConfig();
    int r = 255;
    int g = 255;
    int b = 255;
    config.GetVal_color(r, g, b);
    CWaterMarkParam watermark;
    watermark.SetVal_b_enable(config.GetVal_b_enable());
    watermark.SetVal_b_auto_adapt(config.GetVal_b_enable_autoadaptcolor());
    watermark.SetVal_water_mark_contents(WatermarkLines(config));
    watermark.SetVal_r(r);
    watermark.SetVal_g(g);
    watermark.SetVal_b(b);
    watermark.SetVal_font_size(config.GetVal_font_size());
    watermark.SetVal_transparency(config.GetVal_transparency());
    watermark.SetVal_rotation_angle(config.GetVal_rotation_angle());
    watermark.SetVal_space(config.GetVal_space());
    watermark.SetVal_bench_width(config.GetVal_bench_width());
    watermark.SetVal_bench_height(config.GetVal_bench_height());
    return watermark;
}

std::unique_ptr<CVideoFormatTransfer> MakeTransfer()
{
    try {
        return std::make_unique<CVideoFormatTransfer>();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool Replace(const std::string& old_file, const std::string& from, const std::string& to)
{
    return FileSystem::DeleteFileW(old_file.c_str()) == 0 &&
           FileSystem::RenameFile(from.c_str(), to.c_str()) == 0;
}

}  // namespace

void CDeterminantWriteFileTask::DeleteVideoFiles(const VideoTaskParam& video)
{
    const VideoDownloadInfo& info = video.download_info;
    const std::string stem = info.str_video_save_path_current + info.str_video_save_name;
    FileSystem::DeleteFileW((stem + ".mp4").c_str());
    FileSystem::DeleteFileW((stem + ".avi").c_str());
    if (info.is_snap)
        FileSystem::DeleteFileW((stem + ".jpg").c_str());
}

bool CDeterminantWriteFileTask::VideoInfoOverlayStart(VideoTaskParam& video)
{
    const auto& overlay = video.ptr_info_overlay;
    if (!overlay) {
        LogInfo("[VideoWatermarkCovert]info overlay nullptr.");
        return true;
    }
    if (!overlay->IsHandleAvailable()) {
        LogError("[VideoWatermarkCovert]info overlay handle none.");
        return false;
    }
    if (overlay->GetInfoOverlayType() == kNoOverlay) {
        LogError("[VideoWatermarkCovert]info overlay type none. infoOverlayType: %d",
                 overlay->GetInfoOverlayType());
        return true;
    }
    overlay->SetWaterMarkParam(PresentWatermark());
    const VideoDownloadInfo& info = video.download_info;
    // What goes back to avi in the end has come as mp4.
    const bool is_avi = info.video_format == kAvi;
    const std::string extension = is_avi ? Extension(kMp4) : Extension(info.video_format);
    const std::string& base = info.str_video_save_path_current;
    const std::string source = base + info.str_video_save_name + extension;
    const std::string stamped = base + Zell::Base::GuidUtil::CreateGuid() + extension;
    overlay->SetSrcFilePathStr(source);
    overlay->SetDstFilePathStr(stamped);
    const int err = overlay->StartCovert();
    if (err != 0) {
        FileSystem::DeleteFileW(stamped.c_str());
        DeleteVideoFiles(video);
        LogError("[VideoOverlayInfoStart]convert fail. err: %d", err);
        return false;
    }
    return is_avi ? TurnStampedIntoAvi(video, source, stamped) : PlaceStamped(video, source, stamped);
}

bool CDeterminantWriteFileTask::PlaceStamped(const VideoTaskParam& video, const std::string& source,
                                             const std::string& stamped)
{
    if (Replace(source, stamped, source))
        return true;
    DeleteVideoFiles(video);
    FileSystem::DeleteFileW(stamped.c_str());
    LogError("[VideoOverlayInfoStart]delete fail. srcFilePathStr: %s, dstFilePathStr: %s", source.c_str(),
             stamped.c_str());
    return false;
}

// The stamped mp4 stays under its guid beside the avi; hosts know it so.
bool CDeterminantWriteFileTask::TurnStampedIntoAvi(const VideoTaskParam& video, const std::string& source,
                                                   const std::string& stamped)
{
    const std::unique_ptr<CVideoFormatTransfer> transfer = MakeTransfer();
    if (!transfer) {
        DeleteVideoFiles(video);
        LogError("[VideoOverlayInfoStart]make translater fail.");
        return false;
    }
    const std::string& base = video.download_info.str_video_save_path_current;
    const std::string avi = base + video.download_info.str_video_save_name + Extension(kAvi);
    std::string made = base + Zell::Base::GuidUtil::CreateGuid() + Extension(kAvi);
    if (transfer->Translate(made, stamped, 0, "") == 0 && Replace(source, made, avi))
        return true;
    DeleteVideoFiles(video);
    FileSystem::DeleteFileW(stamped.c_str());
    FileSystem::DeleteFileW(made.c_str());
    LogError(
        "[VideoOverlayInfoStart]delete fail. srcFilePathStr: %s, dstFilePathStr: %s, aviFilePathStr0: %s, "
        "aviFilePathStr1: %s",
        source.c_str(), stamped.c_str(), avi.c_str(), made.c_str());
    return false;
}

// Nobody knows which of them is being stamped; a stop of one that is not does no harm.
void CDeterminantWriteFileTask::VideoInfoOverlayStop(std::vector<VideoDownloadEntry>& videos)
{
    for (const VideoDownloadEntry& entry : videos) {
        const auto& overlay = entry.video.ptr_info_overlay;
        if (overlay && overlay->IsHandleAvailable() && overlay->GetInfoOverlayType() != kNoOverlay)
            overlay->StopCovert();
    }
    LogInfo("[VideoOverlayInfoStop]stop video overlay info");
}

}  // namespace FetchyardBussiness
