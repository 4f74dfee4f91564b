#include "FetchyardBussiness/Platform/HtmlTool.h"
#include "ZellBase/CommandLine.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <string_view>
#include <vector>

extern char** environ;  // NOLINT(readability-redundant-declaration): declared for GNU programs only

namespace FetchyardBussiness::Platform {

namespace {

constexpr char kTool[] = "wkhtmltopdf";
constexpr char kScreen[] = "QT_QPA_PLATFORM=";
constexpr int kLowestPriority = 19;

// The tool is a Qt program: without this it would look for a display.
std::vector<std::string> Environment()
{
    std::vector<std::string> variables;
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        if (std::string_view(*variable).rfind(kScreen, 0) != 0)
            variables.emplace_back(*variable);
    }
    variables.push_back(std::string(kScreen) + "offscreen");
    return variables;
}

std::vector<char*> Pointers(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// A group of its own, no signal blocked or ignored, the null device, no other descriptor.
class StartState
{
public:
    StartState()
    {
        posix_spawn_file_actions_init(&files_);
        posix_spawnattr_init(&attributes_);
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&attributes_, &none);
        sigset_t usual;
        sigemptyset(&usual);
        for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGCHLD})
            sigaddset(&usual, signal);
        posix_spawnattr_setsigdefault(&attributes_, &usual);
        posix_spawnattr_setpgroup(&attributes_, 0);
        posix_spawnattr_setflags(&attributes_,
                                 POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&files_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&files_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&files_, STDERR_FILENO + 1);
    }
    StartState(const StartState&) = delete;
    StartState& operator=(const StartState&) = delete;
    ~StartState()
    {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&files_);
    }

    bool Start(std::vector<std::string> words, pid_t& process) const
    {
        std::vector<std::string> variables = Environment();
        return posix_spawnp(&process, kTool, &files_, &attributes_, Pointers(words).data(),
                            Pointers(variables).data()) == 0;
    }

private:
    posix_spawn_file_actions_t files_;
    posix_spawnattr_t attributes_;
};

}  // namespace

bool RunHtmlTool(const std::string& command_line)
{
    pid_t process = -1;
    if (!StartState().Start(Zell::Base::details::SplitCommandLine(std::string(kTool) + " " + command_line),
                            process))
        return false;
    // Of the whole group, should the installed tool be a script. Only a wish: a system may refuse it.
    static_cast<void>(setpriority(PRIO_PGRP, static_cast<id_t>(process), kLowestPriority));
    int status = 0;
    while (waitpid(process, &status, 0) == -1 && errno == EINTR) {
    }
    return true;
}

}  // namespace FetchyardBussiness::Platform
