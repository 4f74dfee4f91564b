#include "Log/LogLine.h"

#include <algorithm>
#include <cstdio>

namespace Zell::Base::details {
namespace {

// The cut may have gone through a letter.
void DropCutLetter(std::string& text)
{
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80)
        text.pop_back();
    if (!text.empty() && static_cast<unsigned char>(text.back()) >= 0xC0)
        text.pop_back();
}

std::string FormatLong(const char* format, std::va_list arguments, std::size_t size) ZELL_PRINTF(1, 0);
std::string FormatLong(const char* format, std::va_list arguments, std::size_t size)
{
    const bool cut = size > kLongestLogText;
    std::string text(std::min(size, kLongestLogText) + 1, '\0');
    if (std::vsnprintf(text.data(), text.size(), format, arguments) < 0)
        return format;
    text.pop_back();
    if (cut) {
        DropCutLetter(text);
        text += "...";
    }
    return text;
}

// Nearly no text has one, and looking for a single letter is the fastest search there is.
void ShowAs(std::string& text, char letter, const char* shown)
{
    for (std::size_t at = text.find(letter); at != std::string::npos; at = text.find(letter, at + 2))
        text.replace(at, 1, shown);
}

}  // namespace

std::string FormatLogText(const char* format, std::va_list arguments)
{
    char line[1024];
    std::va_list first;
    va_copy(first, arguments);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_copy has just made it
    const int size = std::vsnprintf(line, sizeof line, format, first);
    va_end(first);
    std::string text;
    if (size < 0)
        text = format;
    else if (static_cast<std::size_t>(size) < sizeof line)
        text.assign(line, static_cast<std::size_t>(size));
    else
        text = FormatLong(format, arguments, static_cast<std::size_t>(size));
    ShowAs(text, '\n', "\\n");
    ShowAs(text, '\r', "\\r");
    return text;
}

}  // namespace Zell::Base::details
