// What a disk that takes no more does to a stamp. A limit on the size of files stands for the full disk.
#include "MultimediaCommHost/Protection.h"
#include "VideoTest.h"
#include "ZellBase/Error.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

using namespace Zell::MultimediaComm;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class SmallFiles
{
public:
    explicit SmallFiles(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &former_);
        rlimit now = former_;
        now.rlim_cur = bytes;
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &now), 0);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;
    ~SmallFiles() { setrlimit(RLIMIT_FSIZE, &former_); }

private:
    rlimit former_ = {};
};

class FullDisk : public VideoTest
{
protected:
    FullDisk() { lines_ = {Line("Gate")}; }

    void ExpectNothingLeft()
    {
        EXPECT_FALSE(std::filesystem::exists(File("out.mp4")));
        EXPECT_FALSE(std::filesystem::exists(File("out.avi")));
        EXPECT_THAT(WorkFiles(), IsEmpty());
        EXPECT_THAT(HiddenFiles(), IsEmpty());
    }
};

}  // namespace

TEST_F(FullDisk, EndsAStampWithTheSystemsError)
{
    clips::MakeMoving(File("in.mp4"), 10, "640x360");
    {
        const SmallFiles small(100'000);
        EXPECT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayTargetUnwritable);
    }
    EXPECT_EQ(Zell::Base::Error::GetLastError().iFirstCode, 0);
    EXPECT_EQ(Zell::Base::Error::GetLastError().iSecondCode, EFBIG);
    EXPECT_THAT(LogLines(), Contains(HasSubstr("File too large")));
    ExpectNothingLeft();
}

TEST_F(FullDisk, EndsAStampWhoseLastBytesDoNotFit)
{
    clips::MakeMoving(File("in.mp4"), 1);
    ASSERT_EQ(Stamp(File("in.mp4"), File("whole.mp4")), InfoOverlayDone);
    const auto size = static_cast<rlim_t>(std::filesystem::file_size(File("whole.mp4")));
    {
        const SmallFiles small(size - 1);
        EXPECT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayTargetUnwritable);
    }
    ExpectNothingLeft();
}

TEST_F(FullDisk, EndsATranslation)
{
    clips::MakeMoving(File("in.mp4"), 5);
    {
        const SmallFiles small(50'000);
        std::string target = File("out.avi");
        EXPECT_EQ(CVideoFormatTransfer().Translate(target, File("in.mp4"), 0, ""),
                  InfoOverlayTargetUnwritable);
    }
    ExpectNothingLeft();
}

TEST_F(FullDisk, EndsAProtectedFile)
{
    std::string reason;
    {
        const SmallFiles small(50'000);
        ProtectedWriter writer;
        ASSERT_TRUE(writer.Open(File("file"), "password", reason));
        const std::string bytes(200'000, 'x');
        EXPECT_FALSE(writer.Write(bytes.data(), bytes.size(), reason) && writer.Finish(reason));
    }
    EXPECT_THAT(reason, HasSubstr("File too large"));
    EXPECT_FALSE(std::filesystem::exists(File("file")));
}

TEST_F(FullDisk, IsNotNeededToKeepThePlainFileOfAProtectedVideoNameless)
{
    clips::MakeMoving(File("in.mp4"), 60, "640x360");
    ProtectStamped(File("in.mp4"), "password");
    InfoOverlay overlay;
    overlay.SetInfoOverlayType(0);
    overlay.SetInfoOverlayLineArrayVec({Line("Gate")});
    overlay.SetSrcFilePathStr(File("in.mp4"));
    overlay.SetDstFilePathStr(File("out.mp4"));
    std::atomic<bool> has_ended{false};
    std::thread worker([&] {
        EXPECT_EQ(overlay.StartCovert(), InfoOverlayStopped);
        has_ended = true;
    });
    // Until the file is open it has a name for a moment, and nothing in it.
    const std::string folder = DataFolder() + "/video-work";
    bool is_open = false;
    while (!has_ended && !is_open) {
        std::error_code error;
        for (std::filesystem::directory_iterator entry("/proc/self/fd", error);
             !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            std::error_code ignored;
            const std::string name = std::filesystem::read_symlink(entry->path(), ignored).string();
            if (name.rfind(folder, 0) != 0 || name.find("(deleted)") == std::string::npos)
                continue;
            struct stat facts = {};
            is_open = stat(entry->path().c_str(), &facts) == 0 && facts.st_size > 0;
            EXPECT_EQ(facts.st_mode & 0777u, 0600u);
        }
        std::this_thread::yield();
    }
    EXPECT_TRUE(is_open);
    EXPECT_THAT(WorkFiles(), IsEmpty());
    overlay.StopCovert();
    worker.join();
    ExpectNothingLeft();
}

TEST_F(FullDisk, IsNotNeededToClearAwayWhatAKilledProcessLeft)
{
    // The sweep comes once in a process, before the first work; each test of this program is a process of its
    // own.
    const std::string folder = DataFolder() + "/video-work";
    std::filesystem::create_directories(folder);
    clips::WriteFile(folder + "/old", "x");
    clips::WriteFile(folder + "/new", "x");
    std::filesystem::last_write_time(folder + "/old",
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(25));
    clips::MakePlain(File("in.mp4"), "blue", 1);
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    EXPECT_THAT(WorkFiles(), testing::ElementsAre("new"));
}

TEST_F(FullDisk, IsNotNeededToMoveAVideoToAnotherFileSystem)
{
    if (!std::filesystem::is_directory("/dev/shm"))
        GTEST_FAIL() << "there is no second file system to try";
    const std::string folder =
        "/dev/shm/fetchyard-test-" + std::filesystem::path(File("")).parent_path().filename().string();
    std::filesystem::create_directory(folder);
    clips::MakePlain(File("in.mp4"), "blue", 1);
    EXPECT_EQ(Stamp(File("in.mp4"), folder + "/out.mp4"), InfoOverlayDone);
    EXPECT_EQ(clips::Pictures(folder + "/out.mp4").size(), 25u);
    EXPECT_EQ(
        std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()), 1);
    EXPECT_THAT(WorkFiles(), IsEmpty());
    std::filesystem::remove_all(folder);
}
