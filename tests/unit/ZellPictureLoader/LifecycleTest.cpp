#include "LoaderFixture.h"
#include "ZellPictureLoaderHost/WarmUp.h"

#include <QByteArray>

#include <atomic>
#include <cstdlib>
#include <future>

namespace picture_test {
namespace {

namespace fs = std::filesystem;
using ZellPictureLoader::GetLoaderStatistics;
using ZellPictureLoader::InitZellPictureLoader;
using ZellPictureLoader::UninitZellPictureLoader;
using ZellPictureLoader::WarmPictures;

constexpr char kLeftGuid[] = "0a1b2c3d-0000-4000-8000-00000000000f";

class PictureLibrary : public LoaderTest
{
};

TEST_F(PictureLibrary, IsNotThereBeforeItsStart)
{
    std::string data;
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "23/5");
    EXPECT_EQ(LoadIntoMemory(OrdinaryKey("/pictures/a.jpg"), data), "23/5");
    EXPECT_EQ(server_.Total(), 0u);
}

TEST_F(PictureLibrary, LastOfTwoStopsEndsIt)
{
    ASSERT_TRUE(InitZellPictureLoader(""));
    ASSERT_TRUE(InitZellPictureLoader(""));
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
    UninitZellPictureLoader();
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
    EXPECT_EQ(server_.Total(), 1u);
    UninitZellPictureLoader();
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "23/5");
}

TEST_F(PictureLibrary, FurtherStopsAreHarmless)
{
    UninitZellPictureLoader();
    ASSERT_TRUE(InitZellPictureLoader(""));
    UninitZellPictureLoader();
    UninitZellPictureLoader();
    ASSERT_TRUE(InitZellPictureLoader(""));
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
    UninitZellPictureLoader();
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "23/5");
}

TEST_F(PictureLibrary, NewStartBeginsWithAnEmptyCache)
{
    for (std::size_t run = 1; run <= 2; ++run) {
        ASSERT_TRUE(InitZellPictureLoader(""));
        EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
        UninitZellPictureLoader();
        EXPECT_EQ(server_.Total(), run);
        EXPECT_EQ(CountEntries(CacheRoot()), 0u);
    }
}

TEST_F(PictureLibrary, StopEndsWhoeverWaits)
{
    Start();
    server_.Hold("");
    auto ordinary = std::async(std::launch::async, [this] { return Load(OrdinaryKey("/a"), "a.jpg"); });
    auto device = std::async(std::launch::async, [this] { return Load(DeviceKey("/b", "QUERN"), "b.jpg"); });
    WarmPictures(OrdinaryKeys(40));
    ASSERT_TRUE(server_.WaitForTotal(18));
    auto joined =
        std::async(std::launch::async, [this] { return Load(OrdinaryKey("/pictures/0.jpg"), "c.jpg"); });
    while (GetLoaderStatistics().joined == 0)
        std::this_thread::yield();
    UninitZellPictureLoader();
    --starts_;
    EXPECT_EQ(ordinary.get(), "23/6");
    EXPECT_EQ(device.get(), "23/6");
    const std::string text = joined.get();
    EXPECT_TRUE(text == "23/6") << text;
    EXPECT_EQ(CountEntries(exports_), 0u);
    EXPECT_EQ(server_.Total(), 18u);
}

TEST_F(PictureLibrary, StartsAndStopsWhileOthersAsk)
{
    std::atomic<bool> done{false};
    auto asks = std::async(std::launch::async, [&] {
        int wrong = 0;
        while (!done) {
            const std::string text = Load(OrdinaryKey("/pictures/a.jpg"));
            if (text != "0/0" && text != "23/5" && text != "23/6")
                ++wrong;
        }
        return wrong;
    });
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(InitZellPictureLoader(""));
        WarmPictures(OrdinaryKeys(5));
        UninitZellPictureLoader();
    }
    done = true;
    EXPECT_EQ(asks.get(), 0);
}

TEST_F(PictureLibrary, GivenFolderHoldsTheCache)
{
    const fs::path own = folder_ / "own cache";
    ASSERT_TRUE(InitZellPictureLoader(own.u8string()));
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(CountEntries(own), 3u);
    EXPECT_FALSE(fs::exists(CacheRoot()));
    UninitZellPictureLoader();
    EXPECT_EQ(CountEntries(own), 0u);
}

TEST_F(PictureLibrary, FolderThatCannotBeMadeIsRefused)
{
    WriteFile(folder_ / "file", "in the way");
    EXPECT_FALSE(InitZellPictureLoader((folder_ / "file" / "cache").u8string()));
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "23/5");
    UninitZellPictureLoader();
    Start();
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
}

TEST_F(PictureLibrary, WhatAKilledClientLeftIsRemoved)
{
    fs::create_directories(CacheRoot() / kLeftGuid);
    WriteFile(CacheRoot() / kLeftGuid / "17", "half a picture");
    WriteFile(CacheRoot() / (std::string(kLeftGuid) + ".lock"), "");
    Start();
    EXPECT_FALSE(fs::exists(CacheRoot() / kLeftGuid));
    EXPECT_EQ(CountEntries(CacheRoot()), 2u);
}

TEST_F(PictureLibrary, WhatOthersKeepInTheFolderStays)
{
    fs::create_directories(CacheRoot() / "holiday");
    WriteFile(CacheRoot() / "holiday" / "beach.jpg", "mine");
    WriteFile(CacheRoot() / "notes.lock", "mine");
    Start();
    EXPECT_EQ(ReadFile(CacheRoot() / "holiday" / "beach.jpg"), "mine");
    EXPECT_EQ(ReadFile(CacheRoot() / "notes.lock"), "mine");
}

TEST_F(PictureLibrary, ProcessThatLeavesInTheMiddleExitsCleanlyAndItsFolderIsRemovedNextTime)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    constexpr char kRootName[] = "PICTURE_TEST_CACHE_ROOT";
    // The child runs this test from its start, so the folder comes from its environment.
    const char* inherited = std::getenv(kRootName);
    const std::string root = inherited != nullptr ? inherited : (folder_ / "shared").u8string();
    qputenv(kRootName, root.c_str());
    EXPECT_EXIT(
        {
            InitZellPictureLoader(root);
            server_.Hold("");
            WarmPictures(OrdinaryKeys(40));
            server_.WaitForTotal(16);
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
    qunsetenv(kRootName);
    EXPECT_EQ(CountEntries(root), 2u);
    ASSERT_TRUE(InitZellPictureLoader(root));
    EXPECT_EQ(CountEntries(root), 2u);
    UninitZellPictureLoader();
    EXPECT_EQ(CountEntries(root), 0u);
}

TEST_F(PictureLibrary, ClientsOfOneFolderLeaveEachOtherAlone)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    constexpr char kRootName[] = "PICTURE_TEST_CACHE_ROOT";
    const char* inherited = std::getenv(kRootName);
    const std::string root = inherited != nullptr ? inherited : (folder_ / "shared").u8string();
    qputenv(kRootName, root.c_str());
    if (inherited == nullptr) {
        ASSERT_TRUE(InitZellPictureLoader(root));
        EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
        ASSERT_TRUE(Quiet());
    }
    EXPECT_EXIT(
        {
            const bool started = InitZellPictureLoader(root);
            const std::string text = Load(OrdinaryKey("/pictures/b.jpg"));
            UninitZellPictureLoader();
            std::exit(started && text == "0/0" ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
    qunsetenv(kRootName);
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
    EXPECT_EQ(server_.Total(), 1u);
    UninitZellPictureLoader();
}

}  // namespace
}  // namespace picture_test
