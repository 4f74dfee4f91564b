#include "Utf8Text.h"

namespace ZellNetLink {
namespace {

unsigned char ByteAt(std::string_view text, std::size_t index)
{
    return static_cast<unsigned char>(text[index]);
}

// What the second byte of a letter may be: narrower than 80 to BF where the first byte would otherwise allow
// overlong forms, surrogates or numbers above 10FFFF.
bool IsSecondByte(unsigned char first, unsigned char second)
{
    switch (first) {
        case 0xE0:
            return second >= 0xA0 && second <= 0xBF;
        case 0xED:
            return second >= 0x80 && second <= 0x9F;
        case 0xF0:
            return second >= 0x90 && second <= 0xBF;
        case 0xF4:
            return second >= 0x80 && second <= 0x8F;
        default:
            return second >= 0x80 && second <= 0xBF;
    }
}

std::size_t LengthByFirstByte(unsigned char first)
{
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first <= 0xDF)
        return 2;
    if (first >= 0xE0 && first <= 0xEF)
        return 3;
    return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

}  // namespace

std::size_t Utf8LetterLength(std::string_view text)
{
    if (text.empty())
        return 0;
    const std::size_t length = LengthByFirstByte(ByteAt(text, 0));
    if (length == 0 || length > text.size())
        return 0;
    if (length > 1 && !IsSecondByte(ByteAt(text, 0), ByteAt(text, 1)))
        return 0;
    for (std::size_t i = 2; i < length; ++i) {
        if ((ByteAt(text, i) & 0xC0) != 0x80)
            return 0;
    }
    return length;
}

std::string Utf8Repaired(std::string_view text)
{
    std::string repaired;
    repaired.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = Utf8LetterLength(text);
        repaired.append(length == 0 ? kReplacementLetter : text.substr(0, length));
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return repaired;
}

}  // namespace ZellNetLink
