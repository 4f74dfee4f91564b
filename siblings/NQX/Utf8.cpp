#include "NQXHost/SystemText.h"

#include <cstdint>
#include <cstring>

namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080u;

const unsigned char* SkipAscii(const unsigned char* at, const unsigned char* end)
{
    while (end - at >= 8) {
        std::uint64_t block = 0;
        std::memcpy(&block, at, sizeof block);
        if ((block & kHighBits) != 0)
            break;
        at += 8;
    }
    while (at != end && *at < 0x80)
        ++at;
    return at;
}

bool IsTail(unsigned char byte, unsigned char low = 0x80, unsigned char high = 0xBF)
{
    return byte >= low && byte <= high;
}

// Length of the letter that begins with a byte above 0x7F; 0 if it is not valid. The narrower range of the
// second byte shuts out overlong forms, surrogates and what lies above U+10FFFF.
std::size_t LetterSize(const unsigned char* at, std::size_t left)
{
    const unsigned char lead = at[0];
    if (lead >= 0xC2 && lead <= 0xDF)
        return left >= 2 && IsTail(at[1]) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        const unsigned char low = lead == 0xE0 ? 0xA0 : 0x80;
        const unsigned char high = lead == 0xED ? 0x9F : 0xBF;
        return left >= 3 && IsTail(at[1], low, high) && IsTail(at[2]) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const unsigned char low = lead == 0xF0 ? 0x90 : 0x80;
        const unsigned char high = lead == 0xF4 ? 0x8F : 0xBF;
        return left >= 4 && IsTail(at[1], low, high) && IsTail(at[2]) && IsTail(at[3]) ? 4 : 0;
    }
    return 0;
}

}  // namespace

bool NQX_IsUtf8(const char* text, std::size_t size)
{
    const auto* at = reinterpret_cast<const unsigned char*>(text);
    const unsigned char* const end = at + size;
    while ((at = SkipAscii(at, end)) != end) {
        const std::size_t letter = LetterSize(at, static_cast<std::size_t>(end - at));
        if (letter == 0)
            return false;
        at += letter;
    }
    return true;
}

std::string NQX_PathText(const char* text)
{
    if (text == nullptr)
        return {};
    const std::size_t size = std::strlen(text);
    if (NQX_IsUtf8(text, size))
        return {text, size};
    return NQX_LocalToUTF8({text, size});
}
