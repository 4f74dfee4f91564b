// A stop from another thread, at any moment.
#include "VideoTest.h"
#include "ZellBase/Error.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

using namespace Zell::MultimediaComm;
using testing::IsEmpty;

namespace {

constexpr int kRounds = 12;

class StampStop : public VideoTest
{
protected:
    void Prepare(InfoOverlay& overlay)
    {
        overlay.SetInfoOverlayType(0);
        overlay.SetInfoOverlayLineArrayVec({Line("Gate")});
        overlay.SetSrcFilePathStr(File("in.mp4"));
        overlay.SetDstFilePathStr(File("out.mp4"));
    }

    std::uintmax_t WorkBytes() const
    {
        std::uintmax_t bytes = 0;
        std::error_code error;
        for (std::filesystem::directory_iterator entry(DataFolder() + "/video-work", error);
             !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            std::error_code ignored;
            const std::uintmax_t size = entry->file_size(ignored);
            bytes += ignored ? 0 : size;
        }
        return bytes;
    }

    void ExpectNothingLeft()
    {
        EXPECT_FALSE(std::filesystem::exists(File("out.mp4")));
        EXPECT_THAT(WorkFiles(), IsEmpty());
        EXPECT_THAT(HiddenFiles(), IsEmpty());
    }
};

}  // namespace

TEST_F(StampStop, EndsItInTheMiddle)
{
    clips::MakeMoving(File("in.mp4"), 120, "640x360");
    InfoOverlay overlay;
    Prepare(overlay);
    std::atomic<bool> has_ended{false};
    InfoOverlayErr result = InfoOverlayDone;
    Zell::Base::Error::ErrorCode error;
    std::thread worker([&] {
        result = overlay.StartCovert();
        error = Zell::Base::Error::GetLastError();
        has_ended = true;
    });
    while (!has_ended && WorkBytes() == 0)
        std::this_thread::yield();
    const auto stop_time = std::chrono::steady_clock::now();
    overlay.StopCovert();
    worker.join();
    const auto wait = std::chrono::steady_clock::now() - stop_time;
    EXPECT_EQ(result, InfoOverlayStopped);
    EXPECT_EQ(error.iFirstCode, 20);
    EXPECT_EQ(error.iSecondCode, 3209);
    EXPECT_LT(std::chrono::duration<double>(wait).count(), 5.0);  // the whole takes many times as long
    ExpectNothingLeft();
}

TEST_F(StampStop, EndsItFromItsFirstMomentOn)
{
    clips::MakeMoving(File("in.mp4"), 20);
    for (int round = 0; round < kRounds; ++round) {
        InfoOverlay overlay;
        Prepare(overlay);
        std::atomic<bool> has_ended{false};
        InfoOverlayErr result = InfoOverlayDone;
        std::thread worker([&] {
            result = overlay.StartCovert();
            has_ended = true;
        });
        while (!has_ended) {
            overlay.StopCovert();
            std::this_thread::yield();
        }
        worker.join();
        EXPECT_EQ(result, InfoOverlayStopped) << "round " << round;
        ExpectNothingLeft();
    }
}

TEST_F(StampStop, IsLostBeforeTheStart)
{
    clips::MakeMoving(File("in.mp4"), 1);
    InfoOverlay overlay;
    Prepare(overlay);
    overlay.StopCovert();
    overlay.StopCovert();
    EXPECT_EQ(overlay.StartCovert(), InfoOverlayDone);
    overlay.StopCovert();
    EXPECT_EQ(clips::Pictures(File("out.mp4")).size(), 25u);
    EXPECT_EQ(overlay.StartCovert(), InfoOverlayDone);
}

TEST_F(StampStop, OfOneOverlayLeavesAnotherAlone)
{
    clips::MakeMoving(File("in.mp4"), 2);
    InfoOverlay overlay;
    InfoOverlay idle;
    Prepare(overlay);
    std::atomic<bool> has_ended{false};
    std::thread other([&] {
        while (!has_ended) {
            idle.StopCovert();
            EXPECT_TRUE(idle.IsHandleAvailable());
            std::this_thread::yield();
        }
    });
    EXPECT_EQ(overlay.StartCovert(), InfoOverlayDone);
    has_ended = true;
    other.join();
}

TEST_F(StampStop, IsNotNeededToRefuseASecondStartMeanwhile)
{
    clips::MakeMoving(File("in.mp4"), 120, "640x360");
    InfoOverlay overlay;
    Prepare(overlay);
    std::atomic<bool> has_ended{false};
    std::thread worker([&] {
        EXPECT_EQ(overlay.StartCovert(), InfoOverlayStopped);
        has_ended = true;
    });
    while (!has_ended && WorkBytes() == 0)
        std::this_thread::yield();
    EXPECT_EQ(overlay.StartCovert(), InfoOverlayBusy);
    overlay.StopCovert();
    worker.join();
}

TEST_F(StampStop, IsNotNeededForSeveralAtATime)
{
    clips::MakeMoving(File("in.mp4"), 1);
    std::vector<std::thread> workers;
    for (int i = 0; i < 3; ++i) {
        workers.emplace_back([this, i] {
            InfoOverlay overlay;
            Prepare(overlay);
            overlay.SetDstFilePathStr(File("out" + std::to_string(i) + ".mp4"));
            EXPECT_EQ(overlay.StartCovert(), InfoOverlayDone);
        });
    }
    for (std::thread& worker : workers)
        worker.join();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(clips::Pictures(File("out" + std::to_string(i) + ".mp4")).size(), 25u);
}
