#include "Video/Rotation.h"

extern "C" {
#include <libavutil/display.h>
}

#include <cmath>
#include <cstdint>

namespace Zell::MultimediaComm {

int QuarterTurns(const AVStream& stream)
{
    const std::uint8_t* const matrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (matrix == nullptr)
        return 0;
    const double degrees = -av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix));
    if (std::isnan(degrees))
        return 0;
    const auto quarters = static_cast<int>(std::lround(degrees / 90));
    return ((quarters % 4) + 4) % 4;
}

std::pair<int, int> TurnedPlace(int x, int y, int quarter_turns, int width, int height)
{
    switch (quarter_turns) {
        case 1:
            return {height - 1 - y, x};
        case 2:
            return {width - 1 - x, height - 1 - y};
        case 3:
            return {y, width - 1 - x};
        default:
            return {x, y};
    }
}

std::pair<int, int> UnturnedPlace(int x, int y, int quarter_turns, int width, int height)
{
    switch (quarter_turns) {
        case 1:
            return {y, height - 1 - x};
        case 2:
            return {width - 1 - x, height - 1 - y};
        case 3:
            return {width - 1 - y, x};
        default:
            return {x, y};
    }
}

}  // namespace Zell::MultimediaComm
