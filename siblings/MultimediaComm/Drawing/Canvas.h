#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Zell::MultimediaComm {

struct Colour
{
    int red = 255;
    int green = 255;
    int blue = 255;
};

// A clear sheet to draw on: red, green, blue and cover of each pixel, 0 to 255, the colours multiplied by the
// cover.
class Canvas
{
public:
    struct Pixel
    {
        std::uint8_t red = 0;
        std::uint8_t green = 0;
        std::uint8_t blue = 0;
        std::uint8_t cover = 0;
    };

    Canvas(int width, int height)
        : width_(width),
          height_(height),
          pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    {
    }

    int Width() const { return width_; }
    int Height() const { return height_; }
    Pixel& At(int x, int y) { return pixels_[Place(x, y)]; }
    const Pixel& At(int x, int y) const { return pixels_[Place(x, y)]; }
    bool IsClear() const;

    // Lays a mask of one colour on what is there. Mask values and opacity are 0 to 255; what lies outside is
    // cut off.
    void Lay(const std::uint8_t* mask, int step, int mask_width, int mask_height, int left, int top,
             Colour colour, int opacity);

private:
    std::size_t Place(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
    }

    int width_;
    int height_;
    std::vector<Pixel> pixels_;
};

}  // namespace Zell::MultimediaComm
