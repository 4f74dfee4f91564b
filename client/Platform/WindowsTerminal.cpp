#include "Platform/Terminal.h"

#include <windows.h>

namespace FetchyardClient {

bool IsTerminal()
{
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(output, &mode) && SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

int TerminalWidth()
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info))
        return 80;
    return info.srWindow.Right - info.srWindow.Left + 1;
}

bool HasDisplay()
{
    return true;
}

long ProcessNumber()
{
    return static_cast<long>(GetCurrentProcessId());
}

// A backslash before the closing quote would be taken for its escape. A quote itself stands in no path.
std::string ShellWord(const std::string& word)
{
    if (!word.empty() && word.find_first_of(" \t&()^;,=") == std::string::npos)
        return word;
    const std::size_t last = word.find_last_not_of('\\');
    const std::size_t backslashes = last == std::string::npos ? word.size() : word.size() - last - 1;
    return "\"" + word + std::string(backslashes, '\\') + "\"";
}

}  // namespace FetchyardClient
