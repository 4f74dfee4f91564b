#include "plugins/clipvault/Downloads.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ClipVault::Downloads;

// The downloads of a plug-in that has just been started.
class DownloadsTest : public testing::Test
{
protected:
    DownloadsTest() { downloads_.Open(); }
    ~DownloadsTest() override { downloads_.Close(); }

    // Begins and ends one of that GUID with so many bytes.
    void Run(const std::string& guid, int bytes)
    {
        const auto download = downloads_.Begin(guid);
        ASSERT_NE(download, nullptr);
        download->bytes = bytes;
        downloads_.End(guid);
    }

    Downloads& downloads_ = Downloads::Instance();
};

TEST_F(DownloadsTest, NoneBeginsInAPluginThatIsStopped)
{
    downloads_.Close();
    EXPECT_FALSE(downloads_.IsOpen());
    EXPECT_EQ(downloads_.Begin("a"), nullptr);
    downloads_.Open();
    EXPECT_NE(downloads_.Begin("a"), nullptr);
    downloads_.End("a");
}

TEST_F(DownloadsTest, OneOfAGuidAtATime)
{
    const auto first = downloads_.Begin("a");
    EXPECT_EQ(downloads_.Begin("a"), nullptr);
    EXPECT_NE(downloads_.Begin("b"), nullptr);
    downloads_.End("a");
    EXPECT_NE(downloads_.Begin("a"), nullptr);
    downloads_.End("a");
    downloads_.End("b");
}

TEST_F(DownloadsTest, StopReachesTheOneUnderWayOnly)
{
    const auto first = downloads_.Begin("a");
    const auto second = downloads_.Begin("b");
    downloads_.Stop("a");
    EXPECT_TRUE(first->is_stopped);
    EXPECT_FALSE(second->is_stopped);
    downloads_.End("a");
    downloads_.End("b");
}

TEST_F(DownloadsTest, StopsOfOthersAreRememberedUpTo256)
{
    for (int i = 0; i < 257; ++i)
        downloads_.Stop(std::to_string(i));
    EXPECT_FALSE(downloads_.Begin("0")->is_stopped);
    EXPECT_TRUE(downloads_.Begin("1")->is_stopped);
    EXPECT_TRUE(downloads_.Begin("256")->is_stopped);
    for (const char* const guid : {"0", "1", "256"})
        downloads_.End(guid);
}

TEST_F(DownloadsTest, StopTwiceIsRememberedOnce)
{
    downloads_.Stop("a");
    downloads_.Stop("a");
    EXPECT_TRUE(downloads_.Begin("a")->is_stopped);
    downloads_.End("a");
    EXPECT_FALSE(downloads_.Begin("a")->is_stopped);
    downloads_.End("a");
}

TEST_F(DownloadsTest, StopOfOneThatHasEndedIsNoStopOfTheNext)
{
    Run("a", 5);
    downloads_.Stop("a");
    EXPECT_FALSE(downloads_.Begin("a")->is_stopped);
    downloads_.End("a");
}

TEST_F(DownloadsTest, SizesOfTheLast256AreKept)
{
    for (int i = 1; i <= 257; ++i)
        Run(std::to_string(i), i);
    EXPECT_EQ(downloads_.Size("1"), 0);
    EXPECT_EQ(downloads_.Size("2"), 2);
    EXPECT_EQ(downloads_.Size("257"), 257);
    downloads_.Remove("257");
    EXPECT_EQ(downloads_.Size("257"), 0);
}

TEST_F(DownloadsTest, OneUnderWayOutlivesItsRemoval)
{
    const auto download = downloads_.Begin("a");
    download->bytes = 7;
    downloads_.Remove("a");
    EXPECT_EQ(downloads_.Size("a"), 7);
    EXPECT_FALSE(download->is_stopped);
    downloads_.End("a");
}

TEST_F(DownloadsTest, CloseStopsAllAndForgetsTheRest)
{
    Run("a", 5);
    downloads_.Stop("later");
    const auto download = downloads_.Begin("b");
    downloads_.Close();
    EXPECT_TRUE(download->is_stopped);
    EXPECT_EQ(downloads_.Size("a"), 0);
    downloads_.End("b");
    downloads_.Open();
    EXPECT_FALSE(downloads_.Begin("later")->is_stopped);
    downloads_.End("later");
}

}  // namespace
