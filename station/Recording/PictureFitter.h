#pragma once

#include "station/Recording/FrameEncoder.h"

namespace Station {

// Brings frames of any size and kind to one size, in 4:2:0 of eight bits, with black at the edges where the
// shape is another. Throws VideoError.
class PictureFitter
{
public:
    // Both even.
    PictureFitter(int width, int height);

    // The frame itself if it fits already; otherwise one that stays until the next call.
    AVFrame& Fit(AVFrame& frame);

private:
    void Scale(const AVFrame& frame);

    const int width_;
    const int height_;
    av::Scaler scaler_;
    av::Frame fitted_;
};

// The frame as a JPEG file: turned as the stream says, with square pixels.
std::string FrameAsJpeg(const AVFrame& frame, const AVStream& stream);

}  // namespace Station
