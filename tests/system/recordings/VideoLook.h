#pragma once

#include <QImage>

#include <cstdint>
#include <string>
#include <vector>

namespace SystemTest {

// What the code at the top of a seeded recording's frame says.
struct FrameTime
{
    std::int64_t second = 0;  // since 1970
    int number = 0;           // of the frame in its second

    // Frames since 1970.
    std::int64_t Count() const { return second * 25 + number; }
};

struct LookedFrame
{
    FrameTime time;
    std::int64_t shown_ms = 0;  // after the first frame
};

struct LookedPacket
{
    std::string bytes;
    bool is_key = false;
};

// A video file, decoded to its end. Throws std::runtime_error if a part of it can't be.
struct VideoLook
{
    explicit VideoLook(const std::string& path);

    std::vector<LookedFrame> frames;
    std::vector<LookedPacket> packets;  // of the video, in their order
    int sound_packets = 0;
    int width = 0;
    int height = 0;
};

FrameTime ReadTime(const QImage& image);
// Whether the frames of a seeded recording follow each other without one missing or twice, from that one on.
bool RunsFrom(const VideoLook& video, std::int64_t second, int number);

}  // namespace SystemTest
