#pragma once

#include "MultimediaCommHost/AvPointers.h"

#include <cstdint>

namespace Zell::MultimediaComm {

// How the numbers of a picture stand for colours.
struct PictureColours
{
    AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
    AVColorSpace space = AVCOL_SPC_UNSPECIFIED;
    AVColorPrimaries primaries = AVCOL_PRI_UNSPECIFIED;
    AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;
    AVChromaLocation chroma_place = AVCHROMA_LOC_UNSPECIFIED;
};

// Brings decoded pictures into the form that is encoded: 8 bits, 4:2:0, of one even size. That is what every
// player shows. A picture that has that form already is not touched.
class PictureFitter
{
public:
    // Of the first pictures: their form, which may be AV_PIX_FMT_NONE if that is not known, and their size.
    PictureFitter(const AVCodecContext& decoder);

    // An odd width or height, which the form can't have, grows by one; the edge is repeated there.
    int Width() const { return (width_ + 1) / 2 * 2; }
    int Height() const { return (height_ + 1) / 2 * 2; }
    // What the encoded stream is to say about its colours.
    const PictureColours& Colours() const { return colours_; }

    // A picture that may be written into, with the times and marks of the decoded one; throws VideoFailure.
    av::Frame Fit(const AVFrame& decoded);

private:
    av::Frame NewPicture(int width, int height, const AVFrame& like) const;
    av::Frame Convert(const AVFrame& decoded);
    av::Frame Pad(const AVFrame& picture) const;

    int width_;
    int height_;
    PictureColours colours_;
    av::Scaler scaler_;
    int scaler_format_ = -1;
    int scaler_width_ = 0;
    int scaler_height_ = 0;
};

}  // namespace Zell::MultimediaComm
