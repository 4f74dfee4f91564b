#include "ZellBase/Util.h"

#include <array>
#include <cstdint>
#include <random>

namespace Zell::Base::GuidUtil {

std::string CreateGuid()
{
    constexpr char digits[] = "0123456789abcdef";
    std::random_device random;
    std::array<std::uint32_t, 4> words{};
    for (auto& word : words)
        word = random();
    words[1] = (words[1] & 0xFFFF0FFFu) | 0x00004000u;  // version: random
    words[2] = (words[2] & 0x3FFFFFFFu) | 0x80000000u;  // variant
    std::string guid;
    for (int digit = 0; digit < 32; ++digit) {
        if (digit == 8 || digit == 12 || digit == 16 || digit == 20)
            guid += '-';
        const std::uint32_t word = words[static_cast<std::size_t>(digit / 8)];
        guid += digits[(word >> (28 - 4 * (digit % 8))) & 0xF];
    }
    return guid;
}

}  // namespace Zell::Base::GuidUtil
