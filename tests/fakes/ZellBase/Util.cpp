#include "ZellBase/Util.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

#include <QByteArray>
#include <QTextCodec>

#include <cstdarg>
#include <cstdio>
#include <vector>

namespace Zell::Base {

namespace GuidUtil {

std::string CreateGuid()
{
    return "guid-" + std::to_string(fakes::NextNumber("guid"));
}

}  // namespace GuidUtil

namespace StringUtil {

std::string str_fmt(const char* format, ...)
{
    std::va_list arguments;
    std::va_list again;
    va_start(arguments, format);
    va_copy(again, arguments);
    std::vector<char> buffer(static_cast<std::size_t>(std::vsnprintf(nullptr, 0, format, arguments)) + 1);
    std::vsnprintf(buffer.data(), buffer.size(), format, again);
    va_end(again);
    va_end(arguments);
    return std::string(buffer.data(), buffer.size() - 1);
}

std::string StringReplace(const std::string& text, const std::string& from, const std::string& to)
{
    std::string result = text;
    if (from.empty())
        return result;
    for (auto at = result.find(from); at != std::string::npos; at = result.find(from, at + to.size()))
        result.replace(at, from.size(), to);
    return result;
}

}  // namespace StringUtil

namespace TimeUtil {

std::string TimeT2StrShortDatetime(std::int64_t)
{
    fakes::Call("TimeT2StrShortDatetime", "");
    return fakes::TheScript().short_datetime;
}

}  // namespace TimeUtil

namespace Encrypt {

bool Base64Encode(std::string& out, const std::string& in)
{
    out = QByteArray::fromStdString(in).toBase64().toStdString();
    return true;
}

bool Base64Decode(std::string& out, const std::string& in)
{
    out = QByteArray::fromBase64(QByteArray::fromStdString(in)).toStdString();
    return !out.empty() || in.empty();
}

}  // namespace Encrypt

namespace ProcessUtil {

bool LaunchApp(const std::string& command, bool wait, bool hide, void** process)
{
    const std::string flags = std::string(wait ? " wait" : "") + (hide ? " hide" : "");
    return fakes::Call("LaunchApp", command + flags + (process == nullptr ? "" : " with handle"));
}

}  // namespace ProcessUtil

std::string UTF8ToLocal(const std::string& text)
{
    return fakes::TheScript().local_mark + text;
}

std::string LocalToUTF8(const std::string& text)
{
    return fakes::TheScript().utf8_mark + text;
}

bool IsUtf8(const std::string& text)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(text.data(), static_cast<int>(text.size()), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

}  // namespace Zell::Base
