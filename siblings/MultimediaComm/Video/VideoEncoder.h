#pragma once

#include "MultimediaCommHost/AvPointers.h"

#include <cstdint>
#include <deque>
#include <functional>

namespace Zell::MultimediaComm {

class PictureFitter;

// H.264 in the quality of an archive copy. No picture waits for a later one, so the order of the pictures is
// that of their times, as an AVI has it.
class VideoEncoder
{
public:
    struct Setting
    {
        AVRational time_base = {1, 25};
        AVRational frame_rate = {25, 1};
        AVRational pixel_shape = {0, 1};
        bool is_steady = true;  // each picture shows equally long
        bool is_interlaced = false;
        bool has_global_header = false;
    };
    // The packet's times are in Setting::time_base.
    using Sink = std::function<void(AVPacket& packet)>;

    // Throws VideoFailure.
    VideoEncoder(const PictureFitter& pictures, const Setting& setting, Sink sink);

    static bool IsThere();
    const AVCodecContext& Context() const { return *codec_; }
    // Times must rise from picture to picture; the duration is kept.
    void Take(const AVFrame& picture);
    void Finish();

private:
    void SetColours(const PictureFitter& pictures);
    void Send(const AVFrame* picture);

    struct Duration
    {
        std::int64_t time;
        std::int64_t duration;
    };

    Sink sink_;
    av::Codec codec_;
    av::Packet packet_;
    std::deque<Duration> durations_;  // of the pictures inside
};

}  // namespace Zell::MultimediaComm
