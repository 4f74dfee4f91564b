#include "LoaderFixture.h"
#include "ZellPictureLoaderHost/WarmUp.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <thread>

namespace picture_test {
namespace {

using ZellPictureLoader::GetLoaderStatistics;
using ZellPictureLoader::LoaderBounds;
using ZellPictureLoader::WarmPictures;

LoaderBounds WithConnections(std::size_t connections)
{
    LoaderBounds bounds;
    bounds.connections = connections;
    return bounds;
}

class PictureWarmUp : public LoaderTest
{
protected:
    std::future<std::string> LoadBeside(const std::string& address, const std::string& name)
    {
        return std::async(std::launch::async,
                          [this, address, name] { return Load(OrdinaryKey(address), name); });
    }

    void WaitUntilJoined(std::uint64_t count)
    {
        while (GetLoaderStatistics().joined < count)
            std::this_thread::yield();
    }
};

TEST_F(PictureWarmUp, EachPictureIsFetchedOnceAndServedFromTheCache)
{
    Start();
    const std::vector<Key> keys = OrdinaryKeys(50);
    WarmPictures(keys);
    ASSERT_TRUE(Quiet());
    for (const Key& key : keys) {
        EXPECT_EQ(Load(key), "0/0");
        EXPECT_EQ(ReadFile(Target("out.jpg")), PictureOf(key->GetValstrImageUrl()));
    }
    EXPECT_EQ(server_.Total(), 50u);
    EXPECT_EQ(GetLoaderStatistics().cache_hits, 50u);
    EXPECT_EQ(GetLoaderStatistics().warm_requests, 50u);
}

TEST_F(PictureWarmUp, SixteenConnectionsAreUsedAndNoMore)
{
    Start();
    server_.Hold("");
    WarmPictures(OrdinaryKeys(40));
    EXPECT_TRUE(server_.WaitForTotal(16));
    EXPECT_EQ(GetLoaderStatistics().running, 16u);
    EXPECT_EQ(GetLoaderStatistics().queued, 24u);
    server_.LetGo("");
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(server_.Total(), 40u);
    EXPECT_EQ(server_.MostAtATime(), 16u);
}

TEST_F(PictureWarmUp, OrderOfTheListsIsKept)
{
    Start(WithConnections(1));
    WarmPictures(OrdinaryKeys(10, "/first/"));
    WarmPictures(OrdinaryKeys(10, "/second/"));
    ASSERT_TRUE(Quiet());
    std::vector<std::string> expected;
    for (const char* stem : {"/first/", "/second/"}) {
        for (const Key& key : OrdinaryKeys(10, stem))
            expected.push_back(key->GetValstrImageUrl());
    }
    EXPECT_EQ(server_.Targets(), expected);
}

TEST_F(PictureWarmUp, AskingForOneUnderWayWaitsForThatTransfer)
{
    Start();
    server_.Hold("/pictures/0.jpg");
    WarmPictures(OrdinaryKeys(1));
    ASSERT_TRUE(server_.WaitForTotal(1));
    auto load = LoadBeside("/pictures/0.jpg", "out.jpg");
    WaitUntilJoined(1);
    server_.LetGo("/pictures/0.jpg");
    EXPECT_EQ(load.get(), "0/0");
    EXPECT_EQ(server_.Total(), 1u);
}

TEST_F(PictureWarmUp, AskingForOneInTheQueueFetchesItAtOnceAndOnce)
{
    Start(WithConnections(1));
    server_.Hold("/pictures/0.jpg");
    WarmPictures(OrdinaryKeys(5));
    ASSERT_TRUE(server_.WaitForTotal(1));
    EXPECT_EQ(Load(OrdinaryKey("/pictures/3.jpg")), "0/0");
    EXPECT_EQ(GetLoaderStatistics().queued, 3u);
    server_.LetGo("/pictures/0.jpg");
    ASSERT_TRUE(Quiet());
    const std::vector<std::string> expected = {"/pictures/0.jpg", "/pictures/3.jpg", "/pictures/1.jpg",
                                               "/pictures/2.jpg", "/pictures/4.jpg"};
    EXPECT_EQ(server_.Targets(), expected);
}

TEST_F(PictureWarmUp, PictureThatFailedIsTriedOnceMoreWhenAskedFor)
{
    Start();
    server_.Fail("/pictures/0.jpg", 500, 1);
    WarmPictures(OrdinaryKeys(1));
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(GetLoaderStatistics().failures, 1u);
    EXPECT_EQ(Load(OrdinaryKey("/pictures/0.jpg")), "0/0");
    EXPECT_EQ(server_.Total(), 2u);
}

TEST_F(PictureWarmUp, PictureThatFailsAgainFailsWithThatError)
{
    Start();
    server_.Fail("/pictures/0.jpg", 404, 2);
    WarmPictures(OrdinaryKeys(1));
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(Load(OrdinaryKey("/pictures/0.jpg")), "21/404");
    EXPECT_EQ(server_.Total(), 2u);
}

TEST_F(PictureWarmUp, WhoWaitedForAFailingOneGetsATryOfTheirOwn)
{
    Start();
    server_.Fail("/pictures/0.jpg", 500, 1);
    server_.Hold("/pictures/0.jpg");
    WarmPictures(OrdinaryKeys(1));
    ASSERT_TRUE(server_.WaitForTotal(1));
    auto load = LoadBeside("/pictures/0.jpg", "out.jpg");
    WaitUntilJoined(1);
    server_.LetGo("/pictures/0.jpg");
    EXPECT_EQ(load.get(), "0/0");
    EXPECT_EQ(server_.Total(), 2u);
}

TEST_F(PictureWarmUp, FailureThatSomebodyAskedForIsSharedByAllWhoWait)
{
    Start();
    server_.Fail("/pictures/0.jpg", 500, 1);
    server_.Hold("/pictures/0.jpg");
    auto first = LoadBeside("/pictures/0.jpg", "first.jpg");
    ASSERT_TRUE(server_.WaitForTotal(1));
    auto second = LoadBeside("/pictures/0.jpg", "second.jpg");
    WaitUntilJoined(1);
    server_.LetGo("/pictures/0.jpg");
    EXPECT_EQ(first.get(), "21/500");
    EXPECT_EQ(second.get(), "21/500");
    EXPECT_EQ(server_.Total(), 1u);
}

TEST_F(PictureWarmUp, TwoWhoAskAtOnceShareOneTransfer)
{
    Start();
    server_.Hold("/pictures/0.jpg");
    auto first = LoadBeside("/pictures/0.jpg", "first.jpg");
    auto second = LoadBeside("/pictures/0.jpg", "second.jpg");
    WaitUntilJoined(1);
    server_.LetGo("/pictures/0.jpg");
    EXPECT_EQ(first.get(), "0/0");
    EXPECT_EQ(second.get(), "0/0");
    EXPECT_EQ(ReadFile(Target("first.jpg")), ReadFile(Target("second.jpg")));
    EXPECT_EQ(server_.Total(), 1u);
}

TEST_F(PictureWarmUp, DevicePicturesAreNeitherFetchedAheadNorCached)
{
    Start();
    const Key key = DeviceKey("/device/picture", "QUERN&camera=3");
    WarmPictures({key});
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(server_.Total(), 0u);
    EXPECT_EQ(Load(key), "0/0");
    EXPECT_EQ(Load(key), "0/0");
    EXPECT_EQ(server_.Total(), 2u);
    EXPECT_EQ(GetLoaderStatistics().cached_files, 0u);
}

TEST_F(PictureWarmUp, EqualAddressesAreFetchedOnce)
{
    Start();
    server_.Hold("/pictures/0.jpg");
    for (int i = 0; i < 3; ++i)
        WarmPictures(
            {OrdinaryKey("/pictures/0.jpg"), OrdinaryKey(server_.url() + "/pictures/0.jpg"), nullptr});
    server_.LetGo("/pictures/0.jpg");
    ASSERT_TRUE(Quiet());
    WarmPictures(OrdinaryKeys(1));
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(server_.Total(), 1u);
}

TEST_F(PictureWarmUp, KeysWithoutAnAddressArePassedOver)
{
    Start();
    const Key unknown_site = OrdinaryKey("/pictures/0.jpg");
    unknown_site->SetValidWorkStation(99);
    WarmPictures({OrdinaryKey(""), unknown_site, OrdinaryKey("/pictures/1.jpg")});
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(server_.Targets(), std::vector<std::string>{"/pictures/1.jpg"});
}

TEST_F(PictureWarmUp, QueueIsBounded)
{
    LoaderBounds bounds = WithConnections(1);
    bounds.queued_keys = 5;
    Start(bounds);
    server_.Hold("");
    WarmPictures(OrdinaryKeys(20));
    EXPECT_EQ(GetLoaderStatistics().queued, 4u);
    EXPECT_EQ(GetLoaderStatistics().running, 1u);
    server_.LetGo("");
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(server_.Total(), 5u);
    EXPECT_EQ(Load(OrdinaryKey("/pictures/19.jpg")), "0/0");
}

TEST_F(PictureWarmUp, BeforeTheStartItDoesNothing)
{
    WarmPictures(OrdinaryKeys(3));
    EXPECT_TRUE(Quiet());
    EXPECT_EQ(server_.Total(), 0u);
}

TEST_F(PictureWarmUp, ManyWhoAskAndWarmAtOnceAllGetTheirPictures)
{
    LoaderBounds bounds;
    bounds.cache_files = 20;
    Start(bounds);
    const auto export_pictures = [this](int number) {
        int good = 0;
        const std::vector<Key> keys = OrdinaryKeys(60, number % 2 == 0 ? "/even/" : "/odd/");
        WarmPictures(keys);
        const std::string name = std::to_string(number) + ".jpg";
        for (const Key& key : keys) {
            if (Load(key, name) == "0/0" && ReadFile(Target(name)) == PictureOf(key->GetValstrImageUrl()))
                ++good;
        }
        return good;
    };
    std::vector<std::future<int>> exports;
    for (int number = 0; number < 4; ++number)
        exports.push_back(std::async(std::launch::async, export_pictures, number));
    for (std::future<int>& each : exports)
        EXPECT_EQ(each.get(), 60);
    ASSERT_TRUE(Quiet());
    EXPECT_LE(GetLoaderStatistics().cached_files, 20u);
}

}  // namespace
}  // namespace picture_test
