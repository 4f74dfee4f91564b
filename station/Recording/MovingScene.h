#pragma once

#include "station/Drawing/Scenes.h"

#include <QRect>

#include <array>
#include <cstdint>
#include <map>
#include <vector>

struct AVFrame;

namespace Station {

inline constexpr int kVideoWidth = 640;
inline constexpr int kVideoHeight = 360;
inline constexpr int kVideoRate = 25;  // frames a second

// A layer of a video frame: brightness, two colours at half the size, and how much it covers (255: all).
struct Sprite
{
    int width = 0;  // even, as is the height
    int height = 0;
    std::vector<std::uint8_t> y, u, v, alpha;
};

// A scene in which somebody walks or drives to and fro, with a clock burnt in. For machines the frame tells
// its time as well: the upper 16 lines are 32 blocks, white for 1, that make the second since 1970 with the
// highest bit on the left, and of the 16 lines below, the left 5 of such blocks make the number of the frame
// in its second. The same for the same scene and seed. Made on one thread; then any thread may paint.
class MovingScene
{
public:
    // Needs the letters of Lettering.
    MovingScene(const Scene& scene, std::uint64_t seed, Light light);

    // Paints the frame of that second (since 1970, UTC) and number in it, from 0 to 24, into a frame of
    // 640x360 in 4:2:0, whatever is in it.
    void Paint(AVFrame& frame, std::int64_t second, int number) const;

private:
    struct Walker
    {
        Sprite sprite;
        int left = 0;  // where it turns round
        int right = 0;
        int top = 0;
        int step = 2;   // pixels a frame, even
        int delay = 0;  // frames
    };

    void AddWalker(const QImage& image, const QRectF& box, int step, int delay);
    void DrawClock(AVFrame& frame, std::int64_t second, int number) const;

    Sprite ground_;
    std::vector<Walker> walkers_;
    std::map<char, Sprite> letters_;
};

}  // namespace Station
