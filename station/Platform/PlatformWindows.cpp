#include "station/Platform/Platform.h"

#include <condition_variable>
#include <iostream>
#include <mutex>

namespace Station::Platform {
namespace {

bool WaitFor(Socket socket, short events, int timeout_ms)
{
    WSAPOLLFD entry{socket, events, 0};
    return WSAPoll(&entry, 1, timeout_ms) > 0;
}

struct StopFlag
{
    std::mutex mutex;
    std::condition_variable changed;
    bool stop = false;
};

StopFlag& TheStopFlag()
{
    static auto* flag = new StopFlag;
    return *flag;
}

BOOL WINAPI OnConsoleEvent(DWORD)
{
    StopFlag& flag = TheStopFlag();
    const std::lock_guard<std::mutex> lock(flag.mutex);
    flag.stop = true;
    flag.changed.notify_all();
    return TRUE;
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

void HoldStopSignals()
{
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

void WaitForStopSignal()
{
    StopFlag& flag = TheStopFlag();
    std::unique_lock<std::mutex> lock(flag.mutex);
    flag.changed.wait(lock, [&flag] { return flag.stop; });
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

}  // namespace Station::Platform
