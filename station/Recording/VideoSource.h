#pragma once

#include "station/Recording/FrameEncoder.h"

#include <cstdint>
#include <filesystem>
#include <functional>

namespace Station {

inline constexpr AVRational kMilliseconds = {1, 1000};

// A video file that is read packet by packet: its best video and its best audio. Throws VideoError.
class VideoSource
{
public:
    explicit VideoSource(const std::filesystem::path& file);

    AVFormatContext& Form() const { return *input_; }
    AVStream& Video() const { return *input_->streams[video_]; }
    const AVCodecParameters& VideoKind() const { return *Video().codecpar; }
    AVStream* Audio() const { return audio_ < 0 ? nullptr : input_->streams[audio_]; }

    // The next packet of the two streams; false at the end.
    bool Read(AVPacket& packet);
    bool IsVideo(const AVPacket& packet) const { return packet.stream_index == video_; }
    // Where the first frame is: times of recordings count from there. Ticks of the video.
    std::int64_t FirstTick() const { return first_; }
    // Whether the time of a packet or frame of the video is before, at or behind (-1, 0, 1) so many
    // milliseconds after the first frame.
    int Compare(std::int64_t tick, std::int64_t milliseconds) const;
    // The next packet of the video that Read gives is the last key frame that is not behind that time, or the
    // first one of the file. Milliseconds after the first frame.
    void GoToKeyFrame(std::int64_t milliseconds);

private:
    // The next key frame of the video, with what stands before it passed over.
    bool FindKeyFrame(AVPacket& packet);
    void GoTo(std::int64_t tick);

    av::Input input_;
    av::Packet packet_;
    int video_ = -1;
    int audio_ = -1;
    std::int64_t first_ = 0;
};

// Packets to frames. Throws VideoError.
class FrameDecoder
{
public:
    using Sink = std::function<void(AVFrame&)>;  // gets each frame, its time in pts

    explicit FrameDecoder(const AVStream& stream);

    // A packet that is no part of the stream is an error; null gives what is left.
    void Decode(const AVPacket* packet, const Sink& sink);
    const AVCodecContext& Context() const { return *codec_; }

private:
    av::Codec codec_;
    av::Frame frame_;
};

}  // namespace Station
