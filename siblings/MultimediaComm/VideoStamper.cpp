#include "MultimediaCommHost/VideoStamper.h"

#include "Drawing/OverlayScene.h"
#include "Drawing/PictureOverlay.h"
#include "MultimediaCommHost/Protection.h"
#include "Protection/StampedPasswords.h"
#include "Video/Conversion.h"
#include "Video/PictureFitter.h"
#include "Video/Rotation.h"
#include "Video/VideoEncoder.h"
#include "Video/VideoFailure.h"
#include "Video/VideoLog.h"

#include <memory>
#include <optional>
#include <utility>

namespace Zell::MultimediaComm {
namespace {

// Burns the content into one picture after the other.
class PictureStamper
{
public:
    PictureStamper(const OverlayContent& content, const PictureFitter& pictures, int quarter_turns)
        : width_(pictures.Width()),
          height_(pictures.Height()),
          colours_(pictures.Colours()),
          turns_(quarter_turns),
          renderer_(ShownWidth(), ShownHeight()),
          scene_(content, ShownWidth(), ShownHeight(), renderer_)
    {
        if (!renderer_.HasFont())
            throw VideoFailure(InfoOverlayTextUndrawable, "this machine has no font to draw text with");
    }

    void Stamp(AVFrame& picture, std::int64_t milliseconds)
    {
        const auto brightness = [this, &picture](int x, int y) { return BrightnessAt(picture, x, y); };
        if (scene_.GoTo(milliseconds, brightness))
            Draw();
        if (overlay_)
            overlay_->LayOn(picture);
    }

private:
    int ShownWidth() const { return turns_ % 2 == 0 ? width_ : height_; }
    int ShownHeight() const { return turns_ % 2 == 0 ? height_ : width_; }

    void Draw()
    {
        overlay_.reset();
        const std::vector<TextItem> items = scene_.Items();
        if (items.empty())
            return;
        overlay_.emplace(renderer_.Draw(items), turns_, width_, height_, colours_);
        for (const std::string& letter : renderer_.MissingLetters()) {
            if (told_.insert(letter).second)
                WriteVideoLog(Base::details::kLogWarning, "PictureStamper::Draw",
                              "no font of this machine has the letter " + letter + ", which shows as a box");
        }
    }

    int BrightnessAt(const AVFrame& picture, int shown_x, int shown_y) const
    {
        const auto [x, y] = UnturnedPlace(shown_x, shown_y, turns_, width_, height_);
        const int value = picture.data[0][static_cast<std::ptrdiff_t>(y) * picture.linesize[0] + x];
        return colours_.range == AVCOL_RANGE_JPEG ? value : (value - 16) * 255 / 219;
    }

    int width_;
    int height_;
    PictureColours colours_;
    int turns_;
    TextRenderer renderer_;
    OverlayScene scene_;
    std::optional<PictureOverlay> overlay_;
    std::set<std::string> told_;
};

PictureWorkMaker StampWith(const OverlayContent& content)
{
    return [&content](const PictureFitter& pictures, int quarter_turns) -> PictureWork {
        auto stamper = std::make_shared<PictureStamper>(content, pictures, quarter_turns);
        return
            [stamper](AVFrame& picture, std::int64_t milliseconds) { stamper->Stamp(picture, milliseconds); };
    };
}

}  // namespace

bool InfoOverlay::IsHandleAvailable() const
{
    return VideoEncoder::IsThere();
}

InfoOverlayErr StampVideo(const StampJob& job, const std::atomic<bool>& stop)
{
    return RunVideoWork("StampVideo", [&job, &stop] {
        const OverlayContent content = {job.line_array_type, job.lines, job.watermark};
        const std::string password = PasswordOf(job.source);
        Conversion conversion;
        conversion.source = job.source;
        conversion.target = job.target;
        conversion.target_password = password;
        if (!IsBlank(content))
            conversion.make_work = StampWith(content);
        Convert(conversion, stop);
        if (!password.empty()) {
            ProtectStamped(job.target, password);
            ProtectStamped(job.source, "");
        }
    });
}

}  // namespace Zell::MultimediaComm
