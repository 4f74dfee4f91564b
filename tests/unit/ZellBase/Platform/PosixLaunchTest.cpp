#include "NQX/NQX.h"
#include "tests/unit/TempFolder.h"
#include "ZellBase/Util.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

using Zell::Base::ProcessUtil::LaunchApp;

namespace {

std::string Content(const std::string& path)
{
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// The line that has the report program write into the file and end with the code.
std::string Line(const std::string& file, int code, const std::string& arguments)
{
    return std::string("\"") + REPORT_PROGRAM + "\" \"" + file + "\" " + std::to_string(code) + " " +
           arguments;
}

}  // namespace

TEST(LaunchApp, HandsTheWordsOverWithoutAShell)
{
    const TempFolder folder;
    const std::string file = folder.File("out put");
    EXPECT_TRUE(LaunchApp(Line(file, 0, R"("a b" 'c' $HOME * "" \"q\" "x\\" >y)"), true, true, nullptr));
    EXPECT_THAT(Content(file), ::testing::EndsWith("argument a b\nargument 'c'\nargument $HOME\nargument *\n"
                                                   "argument \nargument \"q\"\nargument x\\\nargument >y\n"));
}

TEST(LaunchApp, IsTrueForExitCodeZeroOnly)
{
    const TempFolder folder;
    EXPECT_TRUE(LaunchApp(Line(folder.File("out"), 0, ""), true, true, nullptr));
    EXPECT_FALSE(LaunchApp(Line(folder.File("out"), 1, ""), true, true, nullptr));
    EXPECT_FALSE(LaunchApp(Line(folder.File("out"), 255, ""), true, true, nullptr));
}

TEST(LaunchApp, GivesTheProcessCleanSurroundings)
{
    const TempFolder folder;
    const int inherited = open(folder.File("left").c_str(), O_WRONLY | O_CREAT, 0600);
    ASSERT_GE(inherited, 0);
    sigset_t block;
    sigset_t before;
    sigemptyset(&block);
    sigaddset(&block, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &block, &before);
    const auto pipe_before = signal(SIGPIPE, SIG_IGN);
    EXPECT_TRUE(LaunchApp(Line(folder.File("out"), 0, ""), true, true, nullptr));
    signal(SIGPIPE, pipe_before);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    close(inherited);
    EXPECT_EQ(Content(folder.File("out")),
              "streams /dev/null /dev/null /dev/null\nothers 0\nown group 1\nblocked 0\npipe default 1\n");
}

TEST(LaunchApp, FailsForAProgramThatIsNotThere)
{
    NQX_SetLastError(0);
    EXPECT_FALSE(LaunchApp("no-such-program-7.exe a b", true, true, nullptr));
    EXPECT_EQ(NQX_GetLastError(), ENOENT);
    EXPECT_FALSE(LaunchApp("./no-such-program-7 a", true, true, nullptr));
    EXPECT_FALSE(LaunchApp("", true, true, nullptr));
    EXPECT_FALSE(LaunchApp("  ", true, true, nullptr));
}

TEST(LaunchApp, FailsForAFileThatCannotBeRun)
{
    const TempFolder folder;
    std::ofstream(folder.File("plain.exe")) << "no program";
    NQX_SetLastError(0);
    EXPECT_FALSE(LaunchApp("\"" + folder.File("plain.exe") + "\"", true, true, nullptr));
    EXPECT_EQ(NQX_GetLastError(), EACCES);
}

TEST(LaunchApp, AgreesWithThePresenceTestOnAFileInTheWorkingDirectory)
{
    const TempFolder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    EXPECT_TRUE(LaunchApp("true.exe", true, true, nullptr));
    std::ofstream("true.exe") << "no program";
    EXPECT_EQ(NQX_AccessFile("true.exe", 0), 0);
    EXPECT_FALSE(LaunchApp("true.exe", true, true, nullptr));
    std::filesystem::current_path(before);
}

TEST(LaunchApp, IsFalseForAProcessThatASignalEnds)
{
    EXPECT_FALSE(LaunchApp("sh -c \"kill -9 $$\"", true, true, nullptr));
}

TEST(LaunchApp, ReturnsAtOnceWithoutWait)
{
    const TempFolder folder;
    const std::string pipe = folder.File("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    void* process = nullptr;
    // The process stays at the pipe until this thread comes to read.
    EXPECT_TRUE(LaunchApp(Line(pipe, 3, "x"), false, true, &process));
    EXPECT_NE(process, nullptr);
    EXPECT_THAT(Content(pipe), ::testing::HasSubstr("argument x"));
}

TEST(LaunchApp, LeavesNoHandleWhenItWaitsOrFails)
{
    const TempFolder folder;
    int something = 0;
    void* process = &something;
    EXPECT_TRUE(LaunchApp(Line(folder.File("out"), 0, ""), true, true, &process));
    EXPECT_EQ(process, nullptr);
    process = &something;
    EXPECT_FALSE(LaunchApp("no-such-program-7.exe", false, true, &process));
    EXPECT_EQ(process, nullptr);
}

TEST(LaunchApp, WaitsOnWhenASignalComes)
{
    const TempFolder folder;
    const std::string pipe = folder.File("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    struct sigaction quiet = {};
    struct sigaction before = {};
    quiet.sa_handler = [](int) {};
    sigaction(SIGUSR2, &quiet, &before);
    bool good = false;
    std::thread waiter([&] { good = LaunchApp(Line(pipe, 0, ""), true, true, nullptr); });
    // Opens once the process runs, so the thread waits for it or is about to.
    std::ifstream reader(pipe);
    for (int i = 0; i < 100; ++i)
        pthread_kill(waiter.native_handle(), SIGUSR2);
    std::stringstream all;
    all << reader.rdbuf();
    waiter.join();
    sigaction(SIGUSR2, &before, nullptr);
    EXPECT_TRUE(good);
}
