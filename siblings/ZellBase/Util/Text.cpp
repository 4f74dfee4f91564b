#include "NQXHost/SystemText.h"
#include "ZellBase/Util.h"

#include <cstdarg>
#include <cstdio>

namespace Zell::Base {

namespace StringUtil {
namespace {

std::string Format(const char* format, std::va_list arguments) ZELL_PRINTF(1, 0);
std::string Format(const char* format, std::va_list arguments)
{
    std::va_list first;
    va_copy(first, arguments);
    const int size = std::vsnprintf(nullptr, 0, format, first);
    va_end(first);
    std::string text;
    if (size > 0) {
        text.resize(static_cast<std::size_t>(size) + 1);
        std::vsnprintf(text.data(), text.size(), format, arguments);
        text.pop_back();
    }
    return text;
}

}  // namespace

std::string str_fmt(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = Format(format, arguments);
    va_end(arguments);
    return text;
}

std::string StringReplace(const std::string& text, const std::string& from, const std::string& to)
{
    if (from.empty())
        return text;
    std::string result;
    std::size_t done = 0;
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, done)) {
        result.append(text, done, at - done).append(to);
        done = at + from.size();
    }
    return result.append(text, done, std::string::npos);
}

}  // namespace StringUtil

std::string UTF8ToLocal(const std::string& text)
{
    return NQX_UTF8ToLocal(text);
}

std::string LocalToUTF8(const std::string& text)
{
    return NQX_LocalToUTF8(text);
}

bool IsUtf8(const std::string& text)
{
    return NQX_IsUtf8(text.data(), text.size());
}

}  // namespace Zell::Base
