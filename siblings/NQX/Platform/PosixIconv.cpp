#include "Platform/PosixIconv.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

// Bytes of a letter that cannot be converted. Only UTF-8 has letters whose length is known from the first
// byte; of any other code page one byte is passed over.
std::size_t LetterToSkip(const char* at, std::size_t left, bool from_utf8)
{
    std::size_t size = 1;
    if (from_utf8) {
        while (size < left && (static_cast<unsigned char>(at[size]) & 0xC0) == 0x80)
            ++size;
    }
    return std::min(size, left);
}

}  // namespace

std::string ConvertCodePage(const std::string& text, const char* from, const char* to)
{
    const iconv_t converter = iconv_open(to, from);
    if (converter == iconv_t(-1))  // NOLINT(performance-no-int-to-ptr): how iconv says no
        return text;
    const bool from_utf8 = std::strcmp(from, "UTF-8") == 0;
    std::string result;
    std::string rest = text;
    char* in = rest.data();
    std::size_t in_left = rest.size();
    while (in_left > 0) {
        char piece[1024];
        char* out = piece;
        std::size_t out_left = sizeof piece;
        const bool whole = iconv(converter, &in, &in_left, &out, &out_left) != static_cast<std::size_t>(-1);
        const int error = errno;
        result.append(piece, sizeof piece - out_left);
        if (!whole && error != E2BIG) {
            const std::size_t skip = LetterToSkip(in, in_left, from_utf8);
            in += skip;
            in_left -= skip;
            result += '?';
        }
    }
    iconv_close(converter);
    return result;
}
