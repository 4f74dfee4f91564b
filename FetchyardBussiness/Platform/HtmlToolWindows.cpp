#include "FetchyardBussiness/Platform/HtmlTool.h"

#include <QString>
#include <windows.h>

namespace FetchyardBussiness::Platform {

bool RunHtmlTool(const std::string& command_line)
{
    std::wstring line = QString::fromStdString(command_line).toStdWString();
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESHOWWINDOW;
    start.wShowWindow = SW_HIDE;
    PROCESS_INFORMATION process = {};
    const BOOL is_started =
        CreateProcessW(L"./wkhtmltopdf.exe", line.data(), nullptr, nullptr, FALSE,
                       CREATE_NO_WINDOW | IDLE_PRIORITY_CLASS, nullptr, nullptr, &start, &process);
    if (process.hProcess != nullptr) {
        WaitForSingleObject(process.hProcess, INFINITE);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    return is_started != FALSE;
}

}  // namespace FetchyardBussiness::Platform
