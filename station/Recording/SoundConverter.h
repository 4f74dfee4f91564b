#pragma once

#include "station/Recording/VideoSource.h"

#include <cstdint>
#include <functional>

namespace Station {

// Sound of any kind to AAC. Throws VideoError.
class SoundConverter
{
public:
    using Sink = std::function<void(AVPacket&)>;  // times are in the time base of Stream

    explicit SoundConverter(const AVStream& source);

    const AVStream& Stream() const { return *form_->streams[0]; }
    void Convert(const AVPacket& packet, const Sink& sink);
    void Finish(const Sink& sink);

private:
    void OpenEncoder(const AVCodecContext& source);
    void TakeFrame(AVFrame& frame);
    void Encode(bool is_end, const Sink& sink);
    void Send(const AVFrame* frame, const Sink& sink);

    FrameDecoder decoder_;
    AVRational source_base_;
    av::Codec encoder_;
    av::Resampler resampler_;
    av::AudioFifo samples_;
    av::Output form_;                     // holds the stream
    std::int64_t next_ = AV_NOPTS_VALUE;  // time of the first sample that waits, in samples
};

}  // namespace Station
