#include "station/Report/JsonText.h"

#include <cstdio>

namespace Station {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool IsTail(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

// Bytes of the UTF-8 character at the start of text; 0 if there is none.
std::size_t CharacterSize(std::string_view text)
{
    const auto at = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = at(0);
    if (first < 0x80)
        return 1;
    const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < size)
        return 0;
    for (std::size_t i = 1; i < size; ++i)
        if (!IsTail(at(i)))
            return 0;
    // Overlong forms, surrogates and values past the last character.
    const unsigned char second = at(1);
    if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
        (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F))
        return 0;
    return size;
}

void AppendControl(std::string& out, char control)
{
    switch (control) {
        case '\n':
            out += "\\n";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\t':
            out += "\\t";
            return;
        default:
            char escape[8];
            std::snprintf(escape, sizeof(escape), "\\u%04x", static_cast<unsigned>(control) & 0xFFu);
            out += escape;
    }
}

}  // namespace

void AppendJson(std::string& out, std::string_view text)
{
    out += '"';
    while (!text.empty()) {
        const char first = text.front();
        const std::size_t size = CharacterSize(text);
        if (size == 0) {
            out += kReplacement;
        } else if (size == 1 && static_cast<unsigned char>(first) < 0x20) {
            AppendControl(out, first);
        } else {
            if (first == '"' || first == '\\')
                out += '\\';
            out += text.substr(0, size);
        }
        text.remove_prefix(size == 0 ? 1 : size);
    }
    out += '"';
}

std::string ToValidUtf8(std::string_view text)
{
    std::string out;
    while (!text.empty()) {
        const std::size_t size = CharacterSize(text);
        out += size == 0 ? kReplacement : text.substr(0, size);
        text.remove_prefix(size == 0 ? 1 : size);
    }
    return out;
}

}  // namespace Station
