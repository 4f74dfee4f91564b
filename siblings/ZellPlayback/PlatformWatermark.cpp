#include "ZellPlayback/PlatformWatermark.h"

#include "MultimediaCommHost/VideoStamper.h"
#include "RunningWork.h"
#include "ZellAssetBook/SystermConfigManager.h"
#include "ZellBase/Error.h"
#include "ZellBase/Log.h"

#include <array>
#include <exception>

namespace {

using Zell::MultimediaComm::CWaterMarkParam;
using Zell::MultimediaComm::InfoOverlayErr;
using Zell::MultimediaComm::InfoOverlayLineArray;
using Zell::MultimediaComm::StampJob;

enum Result : int {
    kDone = 0,
    kSourceUnreadable = 1,
    kNoUsableVideo = 2,
    kTargetUnwritable = 3,
    kStopped = 4,
    kFailed = 5,
};

constexpr Zell::Base::Error::ErrorCode kWrongInput(2, 20, 3);

// One text at an edge or in the middle, by the types of position that a line has.
struct Place
{
    int x_type;
    int y_type;
};
constexpr int kNear = 0;
constexpr int kFar = 1;
constexpr int kCentre = 2;
constexpr std::array<Place, 6> kPlaces = {{{kCentre, kCentre},  // kind 0 is tiled
                                           {kNear, kNear},
                                           {kFar, kNear},
                                           {kNear, kFar},
                                           {kFar, kFar},
                                           {kCentre, kCentre}}};
constexpr int kMargin = 16;

Result ResultOf(InfoOverlayErr result)
{
    switch (result) {
        case Zell::MultimediaComm::InfoOverlayDone:
            return kDone;
        case Zell::MultimediaComm::InfoOverlayStopped:
            return kStopped;
        case Zell::MultimediaComm::InfoOverlaySourceUnreadable:
            return kSourceUnreadable;
        case Zell::MultimediaComm::InfoOverlayNoVideo:
            return kNoUsableVideo;
        case Zell::MultimediaComm::InfoOverlayTargetUnwritable:
            return kTargetUnwritable;
        default:
            return kFailed;
    }
}

CWaterMarkParam Tiled(const std::string& text, const ZellAssetBook::CWaterMark& config)
{
    CWaterMarkParam watermark;
    int red = 255;
    int green = 255;
    int blue = 255;
    config.GetVal_color(red, green, blue);
    watermark.SetVal_b_enable(true);
    watermark.SetVal_b_auto_adapt(config.GetVal_b_enable_autoadaptcolor());
    watermark.SetVal_water_mark_contents({text});
    watermark.SetVal_r(red);
    watermark.SetVal_g(green);
    watermark.SetVal_b(blue);
    watermark.SetVal_font_size(config.GetVal_font_size());
    watermark.SetVal_transparency(config.GetVal_transparency());
    watermark.SetVal_rotation_angle(config.GetVal_rotation_angle());
    watermark.SetVal_space(config.GetVal_space());
    watermark.SetVal_bench_width(config.GetVal_bench_width());
    watermark.SetVal_bench_height(config.GetVal_bench_height());
    return watermark;
}

InfoOverlayLineArray Placed(const std::string& text, const Place& place,
                            const ZellAssetBook::CWaterMark& config)
{
    InfoOverlayLineArray line;
    std::array<int, 3> colour = {255, 255, 255};
    config.GetVal_color(colour[0], colour[1], colour[2]);
    const int margin = place.x_type == kCentre ? 0 : kMargin;
    line.SetContentStr(text);
    line.SetColorRGB(colour);
    line.SetTransparencyNum(config.GetVal_transparency());
    line.SetPosXType(place.x_type);
    line.SetPosX(margin);
    line.SetPosYType(place.y_type);
    line.SetPosY(margin);
    return line;
}

Result Fail(const std::string& reason)
{
    Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogError, "ZellPlayback", "%s", reason.c_str());
    Zell::Base::Error::SetLastError(kWrongInput);
    return kFailed;
}

Result AddWatermark(const std::string& source, const std::string& text, int kind, const std::string& target)
{
    const ZellPlayback::RunningWork work(source);
    const ZellAssetBook::CWaterMark config =
        ZellAssetBook::COXTSystermConfigManager::Instance().GetWaterMarkConfig();
    const std::string shown = text.empty() ? config.GetVal_custom_content() : text;
    if (shown.empty())
        return Fail("there is no watermark text for " + source);
    StampJob job;
    job.source = source;
    job.target = target;
    if (kind >= 1 && kind < static_cast<int>(kPlaces.size()))
        job.lines = {Placed(shown, kPlaces[static_cast<std::size_t>(kind)], config)};
    else
        job.watermark = Tiled(shown, config);
    return ResultOf(Zell::MultimediaComm::StampVideo(job, work.Stop()));
}

}  // namespace

int AddPlatformWatermarkToVideoFile(const std::string& source, const std::string& text, const int& kind,
                                    const std::string& target)
{
    try {
        return AddWatermark(source, text, kind, target);
    } catch (const std::exception& failure) {
        return Fail(source + ": " + failure.what());
    }
}

void StopPlatformWatermarkToVideoFile(std::string source)
{
    ZellPlayback::RunningWork::StopAllOf(source);
}
