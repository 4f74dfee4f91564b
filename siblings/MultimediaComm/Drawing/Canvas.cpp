#include "Drawing/Canvas.h"

#include <algorithm>

namespace Zell::MultimediaComm {
namespace {

// a * b / 255, rounded.
int Part(int a, int b)
{
    const int product = a * b + 128;
    return (product + (product >> 8)) >> 8;
}

void Cover(std::uint8_t& below, int above, int cover)
{
    below = static_cast<std::uint8_t>(Part(above, cover) + Part(below, 255 - cover));
}

}  // namespace

bool Canvas::IsClear() const
{
    return std::all_of(pixels_.begin(), pixels_.end(), [](const Pixel& pixel) { return pixel.cover == 0; });
}

void Canvas::Lay(const std::uint8_t* mask, int step, int mask_width, int mask_height, int left, int top,
                 Colour colour, int opacity)
{
    const int first_column = std::max(0, -left);
    const int last_column = std::min(mask_width, width_ - left);
    for (int row = std::max(0, -top); row < std::min(mask_height, height_ - top); ++row) {
        const std::uint8_t* const values = mask + static_cast<std::ptrdiff_t>(row) * step;
        for (int column = first_column; column < last_column; ++column) {
            const int cover = Part(values[column], opacity);
            if (cover == 0)
                continue;
            Pixel& pixel = At(left + column, top + row);
            Cover(pixel.red, colour.red, cover);
            Cover(pixel.green, colour.green, cover);
            Cover(pixel.blue, colour.blue, cover);
            Cover(pixel.cover, 255, cover);
        }
    }
}

}  // namespace Zell::MultimediaComm
