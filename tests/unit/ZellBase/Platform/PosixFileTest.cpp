#include "NQX/NQX.h"
#include "tests/unit/TempFolder.h"
#include "tests/unit/ZellBase/Files.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Log.h"
#include "ZellBaseHost/LogHost.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

namespace FileSystem = Zell::Base::FileSystem;
namespace fs = std::filesystem;

namespace {

// While it stands, no file of this process grows beyond a size: writing fails half-way, as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t size) : signal_before_(signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit = {size, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before_);
        signal(SIGXFSZ, signal_before_);
    }

private:
    rlimit before_ = {};
    sighandler_t signal_before_;
};

int ToDescriptor(void* handle)
{
    return static_cast<int>(reinterpret_cast<std::intptr_t>(handle));
}

std::size_t Entries(const fs::path& folder)
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

}  // namespace

TEST(PosixFiles, HandlesAreNotInherited)
{
    const TempFolder folder;
    for (const unsigned int flags : {15u, 22u}) {
        void* const handle = FileSystem::OpenFile(folder.File("file").c_str(), flags, 8192);
        EXPECT_NE(fcntl(ToDescriptor(handle), F_GETFD) & FD_CLOEXEC, 0);
        EXPECT_EQ(FileSystem::CloseFile(handle), 0);
    }
}

TEST(PosixFiles, HandleIsNeverNullAlsoWithoutAStandardInput)
{
    const TempFolder folder;
    const int input = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
    close(STDIN_FILENO);
    void* const handle = FileSystem::OpenFile(folder.File("file").c_str(), 22, 8192);
    EXPECT_GT(ToDescriptor(handle), STDERR_FILENO);
    EXPECT_NE(fcntl(ToDescriptor(handle), F_GETFD) & FD_CLOEXEC, 0);
    char text[] = "x";
    EXPECT_EQ(FileSystem::WriteFile(handle, text, 1, nullptr), 0);
    EXPECT_EQ(FileSystem::CloseFile(handle), 0);
    EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1);
    if (input >= 0) {
        dup2(input, STDIN_FILENO);
        close(input);
    }
    EXPECT_EQ(Content(folder.File("file")), "x");
}

TEST(PosixFiles, WriteThatFailsHalfWayTellsHowMuchIsThere)
{
    const TempFolder folder;
    void* const handle = FileSystem::OpenFile(folder.File("file").c_str(), 22, 8192);
    std::string text(8192, 'x');
    unsigned int written = 0;
    NQX_SetLastError(0);
    {
        const FileSizeLimit limit(4096);
        EXPECT_EQ(FileSystem::WriteFile(handle, text.data(), 8192, &written), EFBIG);
    }
    EXPECT_EQ(NQX_GetLastError(), EFBIG);
    EXPECT_EQ(written, 4096u);
    EXPECT_EQ(FileSystem::CloseFile(handle), 0);
}

TEST(PosixFiles, CopyThatFailsHalfWayLeavesTheOldTargetAndNothingElse)
{
    const TempFolder folder;
    std::ofstream(folder.File("source")) << std::string(100000, 'x');
    std::ofstream(folder.File("target")) << "old";
    {
        const FileSizeLimit limit(4096);
        EXPECT_EQ(FileSystem::CopyFileW(folder.File("source").c_str(), folder.File("target").c_str(), 0),
                  EFBIG);
        EXPECT_EQ(FileSystem::CopyFileW(folder.File("source").c_str(), folder.File("new").c_str(), 0), EFBIG);
    }
    EXPECT_EQ(Content(folder.File("target")), "old");
    EXPECT_EQ(Entries(folder.Path()), 2u);
}

TEST(PosixFiles, CopyTakesFilesWhoseSizeIsNotKnownBeforehand)
{
    const TempFolder folder;
    EXPECT_EQ(FileSystem::CopyFileW("/proc/self/status", folder.File("target").c_str(), 0), 0);
    EXPECT_THAT(Content(folder.File("target")), ::testing::HasSubstr("Name:"));
}

TEST(PosixFiles, CopyKeepsTheModeOfTheSource)
{
    const TempFolder folder;
    std::ofstream(folder.File("source")) << "x";
    fs::permissions(folder.File("source"), fs::perms::owner_read);
    EXPECT_EQ(FileSystem::CopyFileW(folder.File("source").c_str(), folder.File("target").c_str(), 0), 0);
    EXPECT_EQ(fs::status(folder.File("target")).permissions(), fs::perms::owner_read);
}

TEST(PosixFiles, RenameGoesFromOneFileSystemToAnother)
{
    const TempFolder folder;
    const std::string source = "/dev/shm/" + folder.Path().filename().string();
    std::ofstream(source) << "content";
    EXPECT_EQ(FileSystem::RenameFile(source.c_str(), folder.File("target").c_str()), 0);
    EXPECT_EQ(Content(folder.File("target")), "content");
    EXPECT_FALSE(fs::exists(source));
    EXPECT_EQ(Entries(folder.Path()), 1u);
}

// The disk stands still: a pipe that nobody reads.
TEST(PosixLog, DropsTheOldestLinesInsteadOfWaiting)
{
    const TempFolder folder;
    const std::string pipe = folder.File("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    ASSERT_TRUE(Zell::Base::details::SetLogFile(pipe, 3));
    const auto write_line = [](int number) {
        Zell::Base::details::IOXTFormatLog(3, "m", "line %d of a log that stands still", number);
    };
    write_line(0);
    pollfd arrived = {reader, POLLIN, 0};
    ASSERT_EQ(poll(&arrived, 1, 60'000), 1) << "the first line is not written";
    for (int i = 1; i < 100000; ++i)
        write_line(i);
    fcntl(reader, F_SETFL, 0);
    std::string text;
    char piece[65536];
    while (text.find("line 99999 ") == std::string::npos) {
        const ssize_t size = read(reader, piece, sizeof piece);
        ASSERT_GT(size, 0);
        text.append(piece, static_cast<std::size_t>(size));
    }
    EXPECT_TRUE(Zell::Base::details::SetLogFile("", 5));
    close(reader);
    const auto holds = [&text](const char* words) { return text.find(words) != std::string::npos; };
    EXPECT_TRUE(holds("m line 0 of"));
    EXPECT_TRUE(holds(" E ZellBase "));
    EXPECT_TRUE(holds(" log lines were dropped"));
}
