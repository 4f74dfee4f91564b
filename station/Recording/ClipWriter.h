#pragma once

#include "station/Recording/Clip.h"
#include "station/Recording/FrameEncoder.h"
#include "station/Recording/ParameterSets.h"

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace Station {

// What a video file is made of.
struct ClipStreams
{
    const AVStream* video = nullptr;  // size, colours and times are as its
    const AVStream* audio = nullptr;  // may be null
    std::string video_box;            // see ParameterSets
    bool has_sets_inside = false;     // key frames bring parameter sets of their own
};

// A video file in the making; unless it was finished, it goes with the object. Packets must come in the order
// of decoding, pictures as units with lengths. Throws VideoError.
class ClipWriter
{
public:
    ClipWriter(const std::filesystem::path& file, ClipFormat format, const ClipStreams& streams);
    ClipWriter(const ClipWriter&) = delete;
    ClipWriter& operator=(const ClipWriter&) = delete;
    ~ClipWriter();

    // Times are in the time base that is given. The packet is empty afterwards.
    void WriteVideo(AVPacket& packet, AVRational time_base);
    void WriteAudio(AVPacket& packet, AVRational time_base);
    // Writes what stands at the end; an mp4 file has its tables in front then.
    void Finish();

private:
    void AddStream(const AVStream& model);
    void Filter(AVPacket& packet);
    void Write(AVPacket& packet, int stream);

    const std::filesystem::path file_;
    av::Output output_;
    av::Filter filter_;  // for formats that have start codes
    AVRational filter_base_ = {0, 1};
    bool is_finished_ = false;
};

}  // namespace Station
