#include "ZellBase/Log.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

#include <cstdarg>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace Zell::Base::details {
namespace {

constexpr std::string_view kHead = "[%s]";
constexpr std::string_view kTail = "[%s(%d)]";

bool IsWellFormed(std::string_view format)
{
    return format.size() >= kHead.size() + kTail.size() && format.substr(0, kHead.size()) == kHead &&
           format.substr(format.size() - kTail.size()) == kTail;
}

bool IsNameOfTheSystem(std::string_view name)
{
    return name.rfind("FetchyardBussiness::", 0) == 0 || name.rfind("Compress::", 0) == 0;
}

std::string Formatted(const char* format, std::va_list arguments)
{
    std::va_list again;
    va_copy(again, arguments);
    const int size = std::vsnprintf(nullptr, 0, format, arguments);
    std::vector<char> buffer(static_cast<std::size_t>(size) + 1);
    std::vsnprintf(buffer.data(), buffer.size(), format, again);
    va_end(again);
    return std::string(buffer.data(), static_cast<std::size_t>(size));
}

}  // namespace

// The tail, source file and line, differs from change to change and is cut off. The head, the name of the
// function, is shown if a test asks for it or if it is not one of this system's names.
void IOXTFormatLog(int level, const char* module, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = Formatted(format, arguments);
    va_end(arguments);

    std::string line = "log" + std::to_string(level) + " ";
    if (std::string_view(module) != "FetchyardBussiness")
        line += std::string("module ") + module + " ";
    if (!IsWellFormed(format)) {
        fakes::Append(line + "without head and tail: " + text);
        return;
    }
    text.resize(text.rfind('['));
    const std::size_t head_end = text.find(']') + 1;
    if (!fakes::TheScript().show_log_heads && IsNameOfTheSystem(text.substr(1)))
        text.erase(0, head_end);
    fakes::Append(line + text);
}

}  // namespace Zell::Base::details
