#include "LoaderFixture.h"
#include "ZellPictureLoaderHost/WarmUp.h"

#include <chrono>
#include <fstream>

namespace picture_test {
namespace {

namespace fs = std::filesystem;
using ZellPictureLoader::GetLoaderStatistics;
using ZellPictureLoader::LoaderBounds;
using ZellPictureLoader::WarmPictures;

LoaderBounds WithFiles(std::size_t files)
{
    LoaderBounds bounds;
    bounds.cache_files = files;
    return bounds;
}

class PictureCache : public LoaderTest
{
protected:
    // Whether the picture came without a request.
    bool IsHit(const std::string& address)
    {
        const std::size_t before = server_.Total();
        EXPECT_EQ(Load(OrdinaryKey(address)), "0/0");
        EXPECT_TRUE(Quiet());
        return server_.Total() == before;
    }
};

TEST_F(PictureCache, HandsOutCopiesThatCanBeChangedInPlace)
{
    Start();
    const Key key = OrdinaryKey("/pictures/a.jpg");
    for (const char* name : {"first.jpg", "second.jpg", "third.jpg"}) {
        EXPECT_EQ(Load(key, name), "0/0");
        ASSERT_TRUE(Quiet());
        EXPECT_EQ(ReadFile(Target(name)), PictureOf("/pictures/a.jpg"));
        EXPECT_EQ(fs::hard_link_count(Target(name)), 1u);
        EXPECT_FALSE(fs::is_symlink(Target(name)));
        std::fstream(Target(name), std::ios::in | std::ios::out | std::ios::binary) << "rescaled in place";
    }
    EXPECT_EQ(server_.Total(), 1u);
}

TEST_F(PictureCache, RemovedTargetComesBackFromTheCache)
{
    Start();
    EXPECT_FALSE(IsHit("/pictures/a.jpg"));
    fs::remove(Target("out.jpg"));
    EXPECT_TRUE(IsHit("/pictures/a.jpg"));
    EXPECT_EQ(ReadFile(Target("out.jpg")), PictureOf("/pictures/a.jpg"));
}

TEST_F(PictureCache, TheLongestUnusedOneGivesWay)
{
    Start(WithFiles(2));
    EXPECT_FALSE(IsHit("/a"));
    EXPECT_FALSE(IsHit("/b"));
    EXPECT_TRUE(IsHit("/a"));
    EXPECT_FALSE(IsHit("/c"));
    EXPECT_TRUE(IsHit("/a"));
    EXPECT_FALSE(IsHit("/b"));
    EXPECT_EQ(GetLoaderStatistics().cached_files, 2u);
    EXPECT_EQ(GetLoaderStatistics().evictions, 2u);
}

TEST_F(PictureCache, FilesOnDiskAreThoseThatAreCounted)
{
    Start(WithFiles(3));
    for (const Key& key : OrdinaryKeys(8))
        EXPECT_EQ(Load(key), "0/0");
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(GetLoaderStatistics().cached_files, 3u);
    EXPECT_EQ(GetLoaderStatistics().cached_bytes, 3 * PictureOf("/x").size());
    EXPECT_EQ(CountEntries(CacheRoot()), 2u + 3u);  // the run's folder and its lock
}

TEST_F(PictureCache, BytesAreBounded)
{
    LoaderBounds bounds;
    bounds.cache_bytes = 70000;
    Start(bounds);
    for (const char* path : {"/a", "/b", "/c"}) {
        server_.SetBody(path, PictureOf(path, 30000));
        EXPECT_FALSE(IsHit(path));
    }
    EXPECT_EQ(GetLoaderStatistics().cached_bytes, 60000u);
    EXPECT_TRUE(IsHit("/c"));
    EXPECT_TRUE(IsHit("/b"));
    EXPECT_FALSE(IsHit("/a"));
}

TEST_F(PictureCache, PictureThatIsLargerThanTheCacheIsHandedOutOnly)
{
    LoaderBounds bounds;
    bounds.cache_bytes = 20000;
    Start(bounds);
    EXPECT_FALSE(IsHit("/small"));
    server_.SetBody("/large", PictureOf("/large", 30000));
    EXPECT_FALSE(IsHit("/large"));
    EXPECT_FALSE(IsHit("/large"));
    EXPECT_TRUE(IsHit("/small"));
}

TEST_F(PictureCache, WhatDoesNotFitIsFetchedAheadOnceThereIsRoom)
{
    Start(WithFiles(3));
    const std::vector<Key> keys = OrdinaryKeys(10);
    WarmPictures(keys);
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(server_.Total(), 3u);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(Load(keys[i]), "0/0");
        ASSERT_TRUE(Quiet());
        EXPECT_EQ(server_.Total(), std::min<std::size_t>(i + 4, 10));
        EXPECT_LE(GetLoaderStatistics().cached_files, 3u);
    }
    EXPECT_EQ(GetLoaderStatistics().cache_hits, 10u);
}

TEST_F(PictureCache, PicturesFetchedAheadDoNotGiveWayToOneAskedFor)
{
    Start(WithFiles(3));
    WarmPictures(OrdinaryKeys(3));
    ASSERT_TRUE(Quiet());
    EXPECT_FALSE(IsHit("/other"));
    for (const Key& key : OrdinaryKeys(3))
        EXPECT_TRUE(IsHit(key->GetValstrImageUrl()));
}

TEST_F(PictureCache, PicturesThatNobodyEverAsksForGiveWayInTheEnd)
{
    LoaderBounds bounds = WithFiles(3);
    bounds.keep_unasked = std::chrono::milliseconds(50);
    Start(bounds);
    WarmPictures(OrdinaryKeys(3, "/stopped/"));
    ASSERT_TRUE(Quiet());
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (server_.Count("/next/2.jpg") == 0 && std::chrono::steady_clock::now() < deadline) {
        WarmPictures(OrdinaryKeys(3, "/next/"));
        ASSERT_TRUE(Quiet());
    }
    EXPECT_EQ(server_.Count("/next/2.jpg"), 1u);
    EXPECT_EQ(GetLoaderStatistics().evictions, 3u);
}

TEST_F(PictureCache, WithoutMemoryPicturesAreHandedOutAndNotKept)
{
    LoaderBounds bounds;
    bounds.memory_bytes = 0;
    Start(bounds);
    WarmPictures(OrdinaryKeys(3));
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(server_.Total(), 0u);
    EXPECT_FALSE(IsHit("/pictures/0.jpg"));
    EXPECT_FALSE(IsHit("/pictures/0.jpg"));
    EXPECT_EQ(ReadFile(Target("out.jpg")), PictureOf("/pictures/0.jpg"));
}

TEST_F(PictureCache, UsersDoNotSeeEachOthersPictures)
{
    Start();
    SetSites("first", "1");
    EXPECT_FALSE(IsHit("/pictures/a.jpg"));
    SetSites("second", "2");
    EXPECT_FALSE(IsHit("/pictures/a.jpg"));
    EXPECT_TRUE(IsHit("/pictures/a.jpg"));
}

}  // namespace
}  // namespace picture_test
