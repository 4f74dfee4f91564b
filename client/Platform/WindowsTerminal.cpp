#include "Platform/Terminal.h"

#include <windows.h>

#include <filesystem>

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

// The text that main gets has been through the code page, which lacks letters.
std::vector<std::string> CommandWords(int /*argc*/, char** /*argv*/)
{
    std::vector<std::string> words;
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; i < count; ++i)
        words.push_back(std::filesystem::path(wide[i]).u8string());
    LocalFree(wide);
    return words;
}

long ProcessNumber()
{
    return static_cast<long>(GetCurrentProcessId());
}

// A backslash before the closing quote would be taken for its escape. A quote itself stands in no path.
std::string ShellWord(const std::string& word)
{
    if (!word.empty() && word.find_first_of(" \t&()^;,") == std::string::npos)
        return word;
    const std::size_t last = word.find_last_not_of('\\');
    const std::size_t backslashes = last == std::string::npos ? word.size() : word.size() - last - 1;
    return "\"" + word + std::string(backslashes, '\\') + "\"";
}

}  // namespace FetchyardClient
