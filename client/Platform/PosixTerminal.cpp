#include "Platform/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace FetchyardClient {

bool IsTerminal()
{
    return isatty(STDOUT_FILENO) == 1;
}

int TerminalWidth()
{
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

long ProcessNumber()
{
    return getpid();
}

}  // namespace FetchyardClient
