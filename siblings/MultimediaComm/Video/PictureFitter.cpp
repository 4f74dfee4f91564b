#include "Video/PictureFitter.h"

#include "Video/VideoFailure.h"

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cstring>

namespace Zell::MultimediaComm {
namespace {

bool IsRgb(int format)
{
    const AVPixFmtDescriptor* const description = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(format));
    return description != nullptr && (description->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

// Older forms that mean the full range by their name.
bool IsFullRangeForm(int format)
{
    return format == AV_PIX_FMT_YUVJ420P || format == AV_PIX_FMT_YUVJ422P || format == AV_PIX_FMT_YUVJ444P ||
           format == AV_PIX_FMT_YUVJ440P || format == AV_PIX_FMT_YUVJ411P;
}

bool IsTargetForm(int format)
{
    return format == AV_PIX_FMT_YUV420P || format == AV_PIX_FMT_YUVJ420P;
}

// Copies a plane into a larger one and repeats its last column and row there.
void PadPlane(const std::uint8_t* from, int from_step, int width, int height, std::uint8_t* to, int to_step,
              int to_width, int to_height)
{
    for (int row = 0; row < to_height; ++row) {
        const std::uint8_t* const source =
            from + static_cast<std::ptrdiff_t>(std::min(row, height - 1)) * from_step;
        std::uint8_t* const target = to + static_cast<std::ptrdiff_t>(row) * to_step;
        std::memcpy(target, source, static_cast<std::size_t>(width));
        std::memset(target + width, source[width - 1], static_cast<std::size_t>(to_width - width));
    }
}

}  // namespace

PictureFitter::PictureFitter(const AVCodecContext& decoder) : width_(decoder.width), height_(decoder.height)
{
    colours_.range = decoder.color_range;
    colours_.space = decoder.colorspace;
    colours_.primaries = decoder.color_primaries;
    colours_.transfer = decoder.color_trc;
    colours_.chroma_place = decoder.chroma_sample_location;
    if (IsFullRangeForm(decoder.pix_fmt))
        colours_.range = AVCOL_RANGE_JPEG;
    if (IsRgb(decoder.pix_fmt)) {
        colours_.range = AVCOL_RANGE_MPEG;
        colours_.space = AVCOL_SPC_SMPTE170M;
    }
}

av::Frame PictureFitter::NewPicture(int width, int height, const AVFrame& like) const
{
    av::Frame picture = CheckMemory(av::MakeFrame());
    picture->format = AV_PIX_FMT_YUV420P;
    picture->width = width;
    picture->height = height;
    Check(av_frame_get_buffer(picture.get(), 0), InfoOverlayFailed, "picture");
    Check(av_frame_copy_props(picture.get(), &like), InfoOverlayFailed, "picture");
    return picture;
}

av::Frame PictureFitter::Convert(const AVFrame& decoded)
{
    if (decoded.format != scaler_format_ || decoded.width != scaler_width_ ||
        decoded.height != scaler_height_) {
        scaler_.reset(sws_getContext(
            decoded.width, decoded.height, static_cast<AVPixelFormat>(decoded.format), width_, height_,
            AV_PIX_FMT_YUV420P, SWS_BICUBIC | SWS_ACCURATE_RND, nullptr, nullptr, nullptr));
        if (!scaler_)
            throw VideoFailure(InfoOverlayNoVideo, "a picture of this kind can't be converted");
        scaler_format_ = decoded.format;
        scaler_width_ = decoded.width;
        scaler_height_ = decoded.height;
        const int* const table = sws_getCoefficients(
            colours_.space == AVCOL_SPC_UNSPECIFIED ? SWS_CS_DEFAULT : static_cast<int>(colours_.space));
        const int is_full = colours_.range == AVCOL_RANGE_JPEG ? 1 : 0;
        const bool is_from_full = is_full != 0 || IsRgb(decoded.format) || IsFullRangeForm(decoded.format);
        // Where the scaler knows no ranges it has none to mix up.
        sws_setColorspaceDetails(scaler_.get(), table, is_from_full ? 1 : 0, table, is_full, 0, 1 << 16,
                                 1 << 16);
    }
    av::Frame picture = NewPicture(width_, height_, decoded);
    Check(sws_scale(scaler_.get(), decoded.data, decoded.linesize, 0, decoded.height, picture->data,
                    picture->linesize),
          InfoOverlayFailed, "picture");
    return picture;
}

av::Frame PictureFitter::Pad(const AVFrame& picture) const
{
    av::Frame padded = NewPicture(Width(), Height(), picture);
    PadPlane(picture.data[0], picture.linesize[0], width_, height_, padded->data[0], padded->linesize[0],
             Width(), Height());
    for (int plane = 1; plane < 3; ++plane)
        PadPlane(picture.data[plane], picture.linesize[plane], Width() / 2, Height() / 2, padded->data[plane],
                 padded->linesize[plane], Width() / 2, Height() / 2);
    return padded;
}

av::Frame PictureFitter::Fit(const AVFrame& decoded)
{
    const bool is_odd = width_ != Width() || height_ != Height();
    const bool is_form = IsTargetForm(decoded.format) && decoded.width == width_ && decoded.height == height_;
    av::Frame picture;
    if (!is_form) {
        picture = Convert(decoded);
    } else if (is_odd) {
        picture = Pad(decoded);
    } else {
        // A decoder still looks at what it has given out, so this is a copy, but of the bytes alone.
        picture = NewPicture(width_, height_, decoded);
        const std::uint8_t* planes[4] = {decoded.data[0], decoded.data[1], decoded.data[2], nullptr};
        av_image_copy(picture->data, picture->linesize, planes, decoded.linesize, AV_PIX_FMT_YUV420P, width_,
                      height_);
    }
    if (!is_form && is_odd)
        picture = Pad(*picture);
    picture->format = AV_PIX_FMT_YUV420P;
    // What kind of picture it becomes is the encoder's to say.
    picture->pict_type = AV_PICTURE_TYPE_NONE;
    picture->key_frame = 0;
    picture->color_range = colours_.range;
    picture->colorspace = colours_.space;
    return picture;
}

}  // namespace Zell::MultimediaComm
