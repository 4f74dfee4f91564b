#include "station/Recording/PictureFitter.h"

#include "station/Drawing/Jpeg.h"

#include <QTransform>

extern "C" {
#include <libavutil/display.h>
#include <libavutil/imgutils.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace Station {
namespace {

constexpr int kScaling = SWS_BICUBIC | SWS_ACCURATE_RND;

bool HasColour420(const AVFrame& frame)
{
    return frame.format == AV_PIX_FMT_YUV420P || frame.format == AV_PIX_FMT_YUVJ420P;
}

// Colours as the source means them, in the range that the target has.
void KeepColours(SwsContext& scaler, const AVFrame& source, bool is_target_full)
{
    const int* const matrix = sws_getCoefficients(
        source.colorspace == AVCOL_SPC_UNSPECIFIED ? SWS_CS_DEFAULT : static_cast<int>(source.colorspace));
    const bool is_full = source.color_range == AVCOL_RANGE_JPEG || source.format == AV_PIX_FMT_YUVJ420P;
    constexpr int kUnchanged = 1 << 16;
    sws_setColorspaceDetails(&scaler, matrix, is_full ? 1 : 0, matrix, is_target_full ? 1 : 0, 0, kUnchanged,
                             kUnchanged);
}

double TurnOf(const AVStream& stream)
{
    std::size_t size = 0;
    const std::uint8_t* const matrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    if (matrix == nullptr || size < 9 * sizeof(std::int32_t))
        return 0;
    const double turn = av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix));
    return std::isnan(turn) ? 0 : -turn;
}

int WidthOnScreen(const AVFrame& frame, const AVStream& stream)
{
    const AVRational shape = stream.codecpar->sample_aspect_ratio;
    if (shape.num <= 0 || shape.den <= 0)
        return frame.width;
    return std::max(1, static_cast<int>(av_rescale(frame.width, shape.num, shape.den)));
}

}  // namespace

PictureFitter::PictureFitter(int width, int height) : width_(width), height_(height) {}

AVFrame& PictureFitter::Fit(AVFrame& frame)
{
    if (frame.width == width_ && frame.height == height_ && HasColour420(frame))
        return frame;
    fitted_ = NewFrame();
    fitted_->width = width_;
    fitted_->height = height_;
    fitted_->format = AV_PIX_FMT_YUV420P;
    fitted_->color_range = frame.color_range;
    fitted_->colorspace = frame.colorspace;
    Check(av_frame_get_buffer(fitted_.get(), 0), "There is no memory for a picture");
    const std::array<std::ptrdiff_t, 4> lines = {fitted_->linesize[0], fitted_->linesize[1],
                                                 fitted_->linesize[2], 0};
    Check(av_image_fill_black(fitted_->data, lines.data(), AV_PIX_FMT_YUV420P, AVCOL_RANGE_MPEG, width_,
                              height_),
          "A picture can't be scaled");
    Scale(frame);
    return *fitted_;
}

void PictureFitter::Scale(const AVFrame& frame)
{
    const double scale =
        std::min(static_cast<double>(width_) / frame.width, static_cast<double>(height_) / frame.height);
    const int width = std::clamp(static_cast<int>(std::lround(frame.width * scale)) & ~1, 2, width_);
    const int height = std::clamp(static_cast<int>(std::lround(frame.height * scale)) & ~1, 2, height_);
    const int left = ((width_ - width) / 2) & ~1;
    const int top = ((height_ - height) / 2) & ~1;
    scaler_.reset(sws_getCachedContext(scaler_.release(), frame.width, frame.height,
                                       static_cast<AVPixelFormat>(frame.format), width, height,
                                       AV_PIX_FMT_YUV420P, kScaling, nullptr, nullptr, nullptr));
    if (!scaler_)
        throw VideoError("A picture of this kind can't be scaled.");
    KeepColours(*scaler_, frame, frame.color_range == AVCOL_RANGE_JPEG);
    const std::array<std::uint8_t*, 4> planes = {
        fitted_->data[0] + std::ptrdiff_t{top} * fitted_->linesize[0] + left,
        fitted_->data[1] + std::ptrdiff_t{top / 2} * fitted_->linesize[1] + left / 2,
        fitted_->data[2] + std::ptrdiff_t{top / 2} * fitted_->linesize[2] + left / 2, nullptr};
    Check(sws_scale(scaler_.get(), frame.data, frame.linesize, 0, frame.height, planes.data(),
                    fitted_->linesize),
          "A picture can't be scaled");
}

std::string FrameAsJpeg(const AVFrame& frame, const AVStream& stream)
{
    const int width = WidthOnScreen(frame, stream);
    const av::Scaler scaler(sws_getContext(frame.width, frame.height,
                                           static_cast<AVPixelFormat>(frame.format), width, frame.height,
                                           AV_PIX_FMT_BGR0, kScaling, nullptr, nullptr, nullptr));
    if (!scaler)
        throw VideoError("A picture of this kind can't be shown.");
    KeepColours(*scaler, frame, true);
    QImage image(width, frame.height, QImage::Format_RGB32);
    const std::array<std::uint8_t*, 4> planes = {image.bits(), nullptr, nullptr, nullptr};
    const std::array<int, 4> lines = {image.bytesPerLine(), 0, 0, 0};
    Check(sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes.data(), lines.data()),
          "A picture can't be shown");
    const double turn = TurnOf(stream);
    return ToJpeg(turn == 0 ? image : image.transformed(QTransform().rotate(turn)));
}

}  // namespace Station
