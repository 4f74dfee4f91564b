#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// Clips for tests, and looks into what became of them.
namespace clips {

// Runs the ffmpeg command to make a file; the arguments stand between the common ones and the path.
void Make(const std::string& arguments, const std::string& path);
// A moving picture of so many seconds at 25 pictures a second, H.264, with a tone as AAC.
std::string MakeMoving(const std::string& path, int seconds, const std::string& size = "320x240");
// One colour, without sound.
std::string MakePlain(const std::string& path, const std::string& colour, double seconds,
                      const std::string& size = "320x240");
void WriteFile(const std::string& path, const std::string& content);
std::string ReadFile(const std::string& path);

struct StreamFacts
{
    std::string codec;
    std::string kind;
    int width = 0;
    int height = 0;
    int quarter_turns = 0;
    bool is_interlaced = false;
    std::string range;
    std::string space;
    std::string primaries;
    std::string transfer;
    std::string packet_hash;  // of all packets' bytes
    int packets = 0;
};
struct FileFacts
{
    std::string form;
    double seconds = 0;
    std::vector<StreamFacts> streams;
    const StreamFacts& Of(const std::string& kind) const;
};
// Through FFmpeg's libraries; a file that they can't read ends the test.
FileFacts Look(const std::string& path);

struct Picture
{
    int width = 0;
    int height = 0;
    double seconds = 0;
    std::vector<std::uint8_t> rgb;

    std::array<int, 3> At(int x, int y) const;
    int Brightness(int x, int y) const;
};
// All pictures of the video, as they are stored.
std::vector<Picture> Pictures(const std::string& path);

struct Box
{
    int left = 0;
    int top = 0;
    int right = -1;  // last column and row that belong to it
    int bottom = -1;

    bool IsEmpty() const { return right < left; }
};
// What is brighter than that in a picture.
Box BrighterThan(const Picture& picture, int brightness);
// Mean of how far the colours of two pictures are apart outside of a box.
double DistanceOutside(const Picture& one, const Picture& other, const Box& box);

}  // namespace clips
