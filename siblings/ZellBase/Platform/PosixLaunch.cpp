#include "NQX/NQX.h"
#include "NQXHost/ProgramSearch.h"
#include "NQXHost/SystemText.h"
#include "ZellBase/CommandLine.h"
#include "ZellBase/Util.h"
#include "ZellBaseHost/ProcessExit.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <thread>
#include <vector>

extern char** environ;  // NOLINT(readability-redundant-declaration): declared for GNU programs only

namespace Zell::Base::ProcessUtil {
namespace {

// What the process starts with: the null device, no other descriptor, a group and a signal state of its own.
class StartState
{
public:
    StartState()
    {
        posix_spawn_file_actions_init(&files_);
        posix_spawnattr_init(&attributes_);
    }
    StartState(const StartState&) = delete;
    StartState& operator=(const StartState&) = delete;
    ~StartState()
    {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&files_);
    }

    // 0 or the system's error.
    int Fill()
    {
        int error = FillFiles();
        if (error == 0)
            error = FillSignals();
        if (error == 0)
            error = posix_spawnattr_setpgroup(&attributes_, 0);
        constexpr int flags = POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        return error != 0 ? error : posix_spawnattr_setflags(&attributes_, flags);
    }

    int Start(const std::string& program, char* const* arguments, pid_t& process) const
    {
        return posix_spawn(&process, program.c_str(), &files_, &attributes_, arguments, environ);
    }

private:
    int FillFiles()
    {
        int error = posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
            if (error == 0)
                error = posix_spawn_file_actions_addopen(&files_, stream, "/dev/null", O_WRONLY, 0);
        }
        return error != 0 ? error : posix_spawn_file_actions_addclosefrom_np(&files_, STDERR_FILENO + 1);
    }

    int FillSignals()
    {
        sigset_t none;
        sigemptyset(&none);
        sigset_t usual;
        sigemptyset(&usual);
        for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGCHLD})
            sigaddset(&usual, signal);
        const int error = posix_spawnattr_setsigmask(&attributes_, &none);
        return error != 0 ? error : posix_spawnattr_setsigdefault(&attributes_, &usual);
    }

    posix_spawn_file_actions_t files_;
    posix_spawnattr_t attributes_;
};

int StartProcess(std::vector<std::string>& words, pid_t& process)
{
    const std::string program = NQX_FindProgram(words.front());
    if (program.empty())
        return ENOENT;
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    StartState state;
    const int error = state.Fill();
    return error != 0 ? error : state.Start(program, arguments.data(), process);
}

bool WaitForSuccess(pid_t process)
{
    int status = 0;
    pid_t ended = -1;
    do {
        ended = waitpid(process, &status, 0);
    } while (ended == -1 && errno == EINTR);
    if (ended == -1) {
        NQX_SetLastError(errno);
        return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// A process that nobody waits for would stay in the system's table when it has ended.
void CollectLater(pid_t process)
{
    try {
        std::thread([process] { WaitForSuccess(process); }).detach();
    } catch (const std::system_error&) {
        // It stays in the table until this process ends.
    }
}

}  // namespace

// hide means nothing here: a process without a window shows none. The handle is the process's number.
bool LaunchApp(const std::string& command, bool wait, bool /*hide*/, void** process)
{
    if (process != nullptr)
        *process = nullptr;
    std::vector<std::string> words = details::SplitCommandLine(NQX_PathText(command.c_str()));
    if (words.empty()) {
        NQX_SetLastError(EINVAL);
        return false;
    }
    pid_t number = -1;
    const int error = StartProcess(words, number);
    if (error != 0) {
        NQX_SetLastError(error);
        return false;
    }
    if (wait) {
        const details::CBlockedMark blocked;
        return WaitForSuccess(number);
    }
    CollectLater(number);
    if (process != nullptr)
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the handle of a process is its number
        *process = reinterpret_cast<void*>(static_cast<std::intptr_t>(number));
    return true;
}

}  // namespace Zell::Base::ProcessUtil
