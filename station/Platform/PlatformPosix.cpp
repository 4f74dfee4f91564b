#include "station/Platform/Platform.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iostream>

namespace Station::Platform {
namespace {

bool WaitFor(Socket socket, short events, int timeout_ms)
{
    pollfd entry{socket, events, 0};
    int ready = 0;
    do {
        ready = poll(&entry, 1, timeout_ms);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

sigset_t StopSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGHUP);
    return signals;
}

}  // namespace

void PrepareListener(Socket listener)
{
    const int on = 1;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
}

void WidenBacklog(Socket listener)
{
    listen(listener, SOMAXCONN);
}

void DisableDelay(Socket socket)
{
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
}

bool WaitReadable(Socket socket, int timeout_ms)
{
    return WaitFor(socket, POLLIN, timeout_ms);
}
bool HasLeft(Socket socket)
{
    char byte = 0;
    return WaitReadable(socket, 0) && ::recv(socket, &byte, 1, MSG_PEEK) <= 0;
}

bool WaitWritable(Socket socket, int timeout_ms)
{
    return WaitFor(socket, POLLOUT, timeout_ms);
}

long Receive(Socket socket, char* data, std::size_t size)
{
    ssize_t got = 0;
    do {
        got = recv(socket, data, size, 0);
    } while (got < 0 && errno == EINTR);
    return static_cast<long>(got);
}

long Send(Socket socket, const char* data, std::size_t size)
{
    ssize_t sent = 0;
    do {
        sent = send(socket, data, size, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return static_cast<long>(sent);
}

void EndReading(Socket socket)
{
    shutdown(socket, SHUT_RD);
}

void Close(Socket socket)
{
    shutdown(socket, SHUT_WR);
    close(socket);
}

void CloseWithReset(Socket socket)
{
    const linger at_once{1, 0};
    setsockopt(socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof(at_once));
    close(socket);
}

void HoldStopSignals()
{
    const sigset_t signals = StopSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

void WaitForStopSignal()
{
    const sigset_t signals = StopSignals();
    int which = 0;
    while (sigwait(&signals, &which) != 0) {
    }
}

bool RestrictToOwner(const std::filesystem::path& path)
{
    return chmod(path.c_str(), S_IRUSR | S_IWUSR) == 0;
}

std::string ReadSecretLine(const std::string& prompt)
{
    termios before{};
    const bool terminal = isatty(STDIN_FILENO) == 1 && tcgetattr(STDIN_FILENO, &before) == 0;
    if (terminal) {
        std::cerr << prompt << std::flush;
        termios silent = before;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    std::string line;
    std::getline(std::cin, line);
    if (terminal) {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
        std::cerr << '\n';
    }
    return line;
}

std::vector<std::string> CommandWords(int argc, char** argv)
{
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

const char* DrawingScreen()
{
    return "offscreen";
}

}  // namespace Station::Platform
