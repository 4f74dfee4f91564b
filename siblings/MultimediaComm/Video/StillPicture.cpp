#include "Video/StillPicture.h"

#include "Video/Rotation.h"
#include "Video/VideoFailure.h"

#include <algorithm>

namespace Zell::MultimediaComm {
namespace {

constexpr int kQuality = 2;  // of 2, the best, to 31
// The standard's matrix, which a JPEG always has.
constexpr int kJpegMatrix = SWS_CS_ITU601;
constexpr int kHighDefinition = 720;

int MatrixOf(const AVFrame& picture)
{
    if (picture.colorspace != AVCOL_SPC_UNSPECIFIED && picture.colorspace != AVCOL_SPC_RGB)
        return picture.colorspace;
    return picture.height >= kHighDefinition ? SWS_CS_ITU709 : SWS_CS_ITU601;
}

av::Frame NewPicture(int width, int height)
{
    av::Frame picture = CheckMemory(av::MakeFrame());
    picture->format = AV_PIX_FMT_YUVJ444P;
    picture->width = width;
    picture->height = height;
    picture->color_range = AVCOL_RANGE_JPEG;
    Check(av_frame_get_buffer(picture.get(), 0), InfoOverlayFailed, "picture");
    return picture;
}

// Without subsampling, so that it can be turned point by point.
av::Frame ToJpegColours(const AVFrame& picture)
{
    const av::Scaler scaler(sws_getContext(
        picture.width, picture.height, static_cast<AVPixelFormat>(picture.format), picture.width,
        picture.height, AV_PIX_FMT_YUVJ444P, SWS_BICUBIC | SWS_ACCURATE_RND, nullptr, nullptr, nullptr));
    if (!scaler)
        throw VideoFailure(InfoOverlayNoVideo, "a picture of this kind can't be converted");
    int* from = nullptr;
    int* to = nullptr;
    int is_from_full = 0;
    int is_to_full = 0;
    int brightness = 0;
    int contrast = 0;
    int saturation = 0;
    if (sws_getColorspaceDetails(scaler.get(), &from, &is_from_full, &to, &is_to_full, &brightness, &contrast,
                                 &saturation) >= 0) {
        if (picture.color_range == AVCOL_RANGE_JPEG)
            is_from_full = 1;
        sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(MatrixOf(picture)), is_from_full,
                                 sws_getCoefficients(kJpegMatrix), 1, brightness, contrast, saturation);
    }
    av::Frame converted = NewPicture(picture.width, picture.height);
    Check(sws_scale(scaler.get(), picture.data, picture.linesize, 0, picture.height, converted->data,
                    converted->linesize),
          InfoOverlayFailed, "picture");
    return converted;
}

av::Frame Turned(av::Frame picture, int quarter_turns)
{
    if (quarter_turns == 0)
        return picture;
    const bool is_swapped = quarter_turns % 2 != 0;
    av::Frame turned = NewPicture(is_swapped ? picture->height : picture->width,
                                  is_swapped ? picture->width : picture->height);
    for (int plane = 0; plane < 3; ++plane) {
        for (int y = 0; y < picture->height; ++y) {
            const std::uint8_t* const row =
                picture->data[plane] + static_cast<std::ptrdiff_t>(y) * picture->linesize[plane];
            for (int x = 0; x < picture->width; ++x) {
                const auto [to_x, to_y] = TurnedPlace(x, y, quarter_turns, picture->width, picture->height);
                turned->data[plane][static_cast<std::ptrdiff_t>(to_y) * turned->linesize[plane] + to_x] =
                    row[x];
            }
        }
    }
    return turned;
}

}  // namespace

std::string EncodeJpeg(const AVFrame& picture, int quarter_turns)
{
    const av::Frame upright = Turned(ToJpegColours(picture), quarter_turns);
    const AVCodec* const codec = avcodec_find_encoder(AV_CODEC_ID_MJPEG);
    if (codec == nullptr)
        throw VideoFailure(InfoOverlayFailed, "there is no JPEG encoder");
    const av::Codec encoder(CheckMemory(avcodec_alloc_context3(codec)));
    encoder->width = upright->width;
    encoder->height = upright->height;
    encoder->pix_fmt = AV_PIX_FMT_YUVJ444P;
    encoder->color_range = AVCOL_RANGE_JPEG;
    encoder->time_base = {1, 25};
    encoder->flags |= AV_CODEC_FLAG_QSCALE;
    encoder->global_quality = kQuality * FF_QP2LAMBDA;
    Check(avcodec_open2(encoder.get(), codec, nullptr), InfoOverlayFailed, "JPEG");
    upright->quality = encoder->global_quality;
    upright->pts = 0;
    const av::Packet packet = CheckMemory(av::MakePacket());
    Check(avcodec_send_frame(encoder.get(), upright.get()), InfoOverlayFailed, "JPEG");
    Check(avcodec_send_frame(encoder.get(), nullptr), InfoOverlayFailed, "JPEG");
    Check(avcodec_receive_packet(encoder.get(), packet.get()), InfoOverlayFailed, "JPEG");
    return {reinterpret_cast<const char*>(packet->data), static_cast<std::size_t>(packet->size)};
}

}  // namespace Zell::MultimediaComm
