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

}  // namespace FetchyardClient
