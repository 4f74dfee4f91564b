#include "LoaderFixture.h"
#include "ZellPictureLoaderHost/WarmUp.h"

#include <sys/resource.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

namespace picture_test {
namespace {

namespace fs = std::filesystem;
using ZellPictureLoader::GetLoaderStatistics;
using ZellPictureLoader::WarmPictures;

// A limit on the size of files stands in for a disk without room: every write beyond it fails.
class NoRoomBeyond
{
public:
    explicit NoRoomBeyond(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit = {bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    NoRoomBeyond(const NoRoomBeyond&) = delete;
    NoRoomBeyond& operator=(const NoRoomBeyond&) = delete;
    ~NoRoomBeyond()
    {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, SIG_DFL);
    }

private:
    rlimit before_ = {};
};

std::string NoRoom()
{
    return "0/" + std::to_string(EFBIG);
}

class PictureDisk : public LoaderTest
{
protected:
    PictureDisk() { Start(); }
};

TEST_F(PictureDisk, PictureThatCannotBeWrittenLeavesTheTargetAsItWas)
{
    WriteFile(Target("out.jpg"), "as it was");
    {
        const NoRoomBeyond limit(1000);
        EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), NoRoom());
        EXPECT_EQ(Load(DeviceKey("/pictures/a.jpg", "QUERN")), NoRoom());
        ASSERT_TRUE(Quiet());
    }
    EXPECT_EQ(ReadFile(Target("out.jpg")), "as it was");
    EXPECT_EQ(CountEntries(exports_), 1u);
    EXPECT_EQ(CountEntries(CacheRoot()), 2u);
}

TEST_F(PictureDisk, LargePictureThatCannotBeWrittenEndsItsTransfer)
{
    server_.SetBody("/large", PictureOf("/large", 3u << 20));
    {
        const NoRoomBeyond limit(600000);
        EXPECT_EQ(Load(DeviceKey("/large", "QUERN")), NoRoom());
    }
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(CountEntries(exports_), 0u);
    EXPECT_EQ(CountEntries(CacheRoot()), 2u);
}

TEST_F(PictureDisk, CacheThatCannotBeWrittenDoesNotMakePicturesFail)
{
    std::string data;
    {
        const NoRoomBeyond limit(1000);
        EXPECT_EQ(LoadIntoMemory(OrdinaryKey("/pictures/a.jpg"), data), "0/0");
        ASSERT_TRUE(Quiet());
        EXPECT_EQ(GetLoaderStatistics().cached_files, 0u);
    }
    EXPECT_EQ(data, PictureOf("/pictures/a.jpg"));
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
    EXPECT_EQ(server_.Total(), 2u);
}

TEST_F(PictureDisk, WarmUpEndsWhenTheCacheCannotBeWritten)
{
    {
        const NoRoomBeyond limit(1000);
        WarmPictures(OrdinaryKeys(1000));
        ASSERT_TRUE(Quiet());
    }
    EXPECT_LT(server_.Total(), 1000u);
    EXPECT_EQ(GetLoaderStatistics().queued, 0u);
    EXPECT_EQ(Load(OrdinaryKey("/pictures/999.jpg")), "0/0");
}

TEST_F(PictureDisk, TargetCanLieOnAnotherFileSystem)
{
    const fs::path other = fs::path("/dev/shm") / folder_.filename();
    fs::create_directories(other);
    const fs::path target = other / "out.jpg";
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg"), target.u8string()), "0/0");
    EXPECT_EQ(ReadFile(target), PictureOf("/pictures/a.jpg"));
    EXPECT_EQ(CountEntries(other), 1u);
    fs::remove_all(other);
}

}  // namespace
}  // namespace picture_test
