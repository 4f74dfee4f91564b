#include "Platform/ToolStart.h"

#include <windows.h>

namespace tools {
namespace {

std::string Narrow(const std::wstring& wide)
{
    const int length = static_cast<int>(wide.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, text.data(), size, nullptr, nullptr);
    return text;
}

void WriteArguments(std::ostream& out)
{
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; i < count; ++i)
        out << "argument " << Narrow(arguments[i]) << '\n';
    LocalFree(arguments);
}

}  // namespace

void WriteStart(std::ostream& out, int /*count*/, char** /*arguments*/)
{
    WriteArguments(out);
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(GetCurrentDirectoryW(MAX_PATH, folder.data()));
    out << "folder " << Narrow(folder) << '\n';
    out << "line " << Narrow(GetCommandLineW()) << '\n';
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    GetStartupInfoW(&start);
    out << "start flags " << start.dwFlags << " show " << start.wShowWindow << '\n';
    out << "priority " << GetPriorityClass(GetCurrentProcess()) << '\n';
    out << "console " << (GetConsoleWindow() == nullptr ? "hidden" : "shown") << '\n';
}

std::string Variable(const char* name)
{
    const std::wstring wide_name(name, name + std::char_traits<char>::length(name));
    std::wstring value(32768, L'\0');
    value.resize(GetEnvironmentVariableW(wide_name.c_str(), value.data(), static_cast<DWORD>(value.size())));
    return Narrow(value);
}

}  // namespace tools
