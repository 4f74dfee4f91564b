#pragma once

#include "Drawing/Canvas.h"
#include "MultimediaCommHost/AvPointers.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Zell::MultimediaComm {

struct PictureColours;

// A canvas as the planes of a 4:2:0 picture, to be laid on many pictures. Only the stretches that hold
// something are kept.
class PictureOverlay
{
public:
    // The canvas has the size that a viewer sees; the pictures have width x height (even) before they are
    // turned. Without a stated matrix that of the picture's size counts, as players take it.
    PictureOverlay(const Canvas& canvas, int quarter_turns, int width, int height,
                   const PictureColours& colours);

    // The picture is 8 bits, 4:2:0, of the size above, and may be written into.
    void LayOn(AVFrame& picture) const;

private:
    struct Stretch
    {
        int row;
        int begin;
        std::size_t first;  // in the two lists
        int count;
    };
    struct Plane
    {
        std::vector<Stretch> stretches;
        std::vector<std::uint8_t> added;  // what the overlay adds
        std::vector<std::uint8_t> kept;   // what stays of the picture, of 255
    };
    struct Values
    {
        Values(int of_width, int of_height);
        void Set(int x, int y, double value, double of_cover);

        int width;
        int height;
        std::vector<std::uint8_t> added;
        std::vector<std::uint8_t> cover;
    };

    static Plane Pack(const Values& values);

    std::array<Plane, 3> planes_;
};

}  // namespace Zell::MultimediaComm
