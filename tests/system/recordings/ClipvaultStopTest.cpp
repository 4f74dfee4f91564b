#include "ClipvaultFixture.h"

#include <chrono>
#include <future>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kClip[] = "/api/v1/recordings/1/clip";
// Far above the 200 ms that a stop may take, far below what the faults would take: a busy machine fails
// nobody.
constexpr std::chrono::seconds kSoon(5);

class ClipvaultStop : public ClipvaultFixture
{
protected:
    // Starts on a thread of its own.
    std::future<bool> StartAside(const json& request)
    {
        return std::async(std::launch::async, [this, request] { return Start(request); });
    }

    // The stop makes it return soon, with true and no file.
    void ExpectStopped(std::future<bool>& under_way)
    {
        ASSERT_EQ(under_way.wait_for(kSoon), std::future_status::ready);
        EXPECT_TRUE(under_way.get());
        EXPECT_EQ(response_["TaskDownloadState"], 4);
        EXPECT_EQ(response_["ErrorModule"], 0);
        EXPECT_EQ(response_["ErrorCode"], 0);
        ExpectFiles({});
    }

    void BeSlow() { station_.SetFault({{"Path", kClip}, {"Kind", "slow"}, {"BytesPerSecond", 20000}}); }
};

}  // namespace

TEST_F(ClipvaultStop, InTheMiddleOfAVideoLeavesNothingManyTimes)
{
    BeSlow();
    for (int i = 0; i < 10; ++i) {
        auto under_way = StartAside(Request("v" + std::to_string(i)));
        const std::string guid = "guid-v" + std::to_string(i);
        while (Size(guid) < 1000 * i)
            std::this_thread::yield();
        Stop(guid);
        ExpectStopped(under_way);
    }
}

TEST_F(ClipvaultStop, WhileTheServerSaysNothingReturnsAtOnce)
{
    station_.SetFault({{"Path", kClip}, {"Kind", "delay"}, {"DelayMs", 600000}});
    auto under_way = StartAside(Request());
    while (station_.RequestCount(kClip) == 0)
        std::this_thread::yield();
    Stop("guid-gate");
    ExpectStopped(under_way);
}

TEST_F(ClipvaultStop, WhileThePasswordBecomesAKeyReturnsAtOnce)
{
    BeSlow();
    for (int i = 0; i < 5; ++i) {
        json request = Request("v" + std::to_string(i));
        Param(request)["Password"] = "secret";
        auto under_way = StartAside(request);
        Stop("guid-v" + std::to_string(i));
        ExpectStopped(under_way);
    }
}

TEST_F(ClipvaultStop, BeforeTheStartIsRemembered)
{
    Stop("guid-gate");
    EXPECT_TRUE(Start(Request()));
    EXPECT_EQ(response_["TaskDownloadState"], 4);
    EXPECT_EQ(response_["ResourceDownloadState"][0]["ResourceDownloadStateType"], 4);
    ExpectFiles({});
    EXPECT_EQ(station_.RequestCount(kClip), 0);
    // Once only.
    EXPECT_TRUE(Start(Request()));
    EXPECT_EQ(response_["TaskDownloadState"], 2);
    ExpectFiles({"gate.mp4"});
}

TEST_F(ClipvaultStop, BeforeTheStartIsForgottenWithTheDownload)
{
    Stop("guid-gate");
    Remove("guid-gate");
    EXPECT_TRUE(Start(Request()));
    EXPECT_EQ(response_["TaskDownloadState"], 2);
}

TEST_F(ClipvaultStop, AfterTheEndChangesNothing)
{
    EXPECT_TRUE(Start(Request()));
    Stop("guid-gate");
    Stop("");
    EXPECT_TRUE(Start(Request()));
    EXPECT_EQ(response_["TaskDownloadState"], 2);
    ExpectFiles({"gate.mp4"});
}

TEST_F(ClipvaultStop, OfOneLeavesTheOthersAlone)
{
    auto other = StartAside(Request("other"));
    Stop("guid-gate");
    Stop("unknown");
    EXPECT_TRUE(other.get());
    EXPECT_EQ(response_["TaskDownloadState"], 2);
    ExpectFiles({"other.mp4"});
}

TEST_F(ClipvaultStop, TakesBackWhatTheSameRequestHadDelivered)
{
    station_.SetFault({{"Path", kClip}, {"Kind", "delay"}, {"DelayMs", 600000}, {"After", 1}});
    json request = Request();
    Resource(request)["DownloadTime"].push_back({{"StartTime", kMinute + 30}, {"EndTime", kMinute + 31}});
    auto under_way = StartAside(request);
    while (station_.RequestCount(kClip) < 2)
        std::this_thread::yield();
    EXPECT_EQ(NamesIn(Out()), std::vector<std::string>{"gate.mp4"});
    Stop("guid-gate");
    ExpectStopped(under_way);
}

TEST_F(ClipvaultStop, FromManyThreadsAtOnceIsHarmless)
{
    BeSlow();
    auto under_way = StartAside(Request());
    while (Size("guid-gate") == 0)
        std::this_thread::yield();
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([i] {
            for (int round = 0; round < 200; ++round) {
                Stop("guid-gate");
                Stop("unknown-" + std::to_string(i * 1000 + round));
                Size("guid-gate");
                Remove("unknown-" + std::to_string(i * 1000 + round));
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    ExpectStopped(under_way);
}

TEST_F(ClipvaultStop, OfThePluginEndsWhatIsUnderWay)
{
    BeSlow();
    auto under_way = StartAside(Request());
    while (Size("guid-gate") == 0)
        std::this_thread::yield();
    EXPECT_TRUE(ZellClientHost::StopPlugin(kPluginId));
    ExpectStopped(under_way);
}
