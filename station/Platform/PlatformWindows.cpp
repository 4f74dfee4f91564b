#include "station/Platform/Platform.h"

#include <windows.h>

#include <atomic>
#include <iostream>

namespace Station::Platform {
namespace {

bool WaitFor(Socket socket, short events, int timeout_ms)
{
    WSAPOLLFD entry{socket, events, 0};
    return WSAPoll(&entry, 1, timeout_ms) > 0;
}

// The one that waits for the end; the events of a console come on a thread of their own.
std::atomic<DWORD> waiting_thread{0};

BOOL WINAPI OnConsoleEvent(DWORD)
{
    return PostThreadMessageW(waiting_thread, WM_CLOSE, 0, 0);
}

}  // namespace

void PrepareListener(Socket listener)
{
    const BOOL on = TRUE;
    setsockopt(listener, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&on), sizeof(on));
}

void WidenBacklog(Socket listener)
{
    ::listen(listener, SOMAXCONN);
}

void DisableDelay(Socket socket)
{
    const BOOL on = TRUE;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof(on));
}

bool WaitReadable(Socket socket, int timeout_ms)
{
    return WaitFor(socket, POLLRDNORM, timeout_ms);
}
bool HasLeft(Socket socket)
{
    char byte = 0;
    return WaitReadable(socket, 0) && ::recv(socket, &byte, 1, MSG_PEEK) <= 0;
}

bool WaitWritable(Socket socket, int timeout_ms)
{
    return WaitFor(socket, POLLWRNORM, timeout_ms);
}

long Receive(Socket socket, char* data, std::size_t size)
{
    return ::recv(socket, data, static_cast<int>(size), 0);
}

long Send(Socket socket, const char* data, std::size_t size)
{
    return ::send(socket, data, static_cast<int>(size), 0);
}

void EndReading(Socket socket)
{
    ::shutdown(socket, SD_RECEIVE);
}

void Close(Socket socket)
{
    ::shutdown(socket, SD_SEND);
    ::closesocket(socket);
}

void CloseWithReset(Socket socket)
{
    const linger at_once{1, 0};
    setsockopt(socket, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&at_once), sizeof(at_once));
    ::closesocket(socket);
}

// The first look makes the thread's queue, in which an early request waits.
void HoldStopSignals()
{
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
    waiting_thread = GetCurrentThreadId();
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

// Who started a program without a console asks its first thread to end by this message, too.
void WaitForStopSignal()
{
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0 && message.message != WM_CLOSE)
        continue;
}

// The data folder lies in the user's profile, which other users can't read.
bool RestrictToOwner(const std::filesystem::path&)
{
    return true;
}

std::string ReadSecretLine(const std::string& prompt)
{
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    DWORD before = 0;
    const bool terminal = GetConsoleMode(input, &before) != 0;
    if (terminal) {
        std::cerr << prompt << std::flush;
        SetConsoleMode(input, before & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
    }
    std::string line;
    std::getline(std::cin, line);
    if (terminal) {
        SetConsoleMode(input, before);
        std::cerr << '\n';
    }
    return line;
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

// The others have no fonts here.
const char* DrawingScreen()
{
    return "windows";
}

}  // namespace Station::Platform
