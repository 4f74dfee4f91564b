#include "VideoTest.h"
#include "ZellAssetBookHost/WaterMarkFile.h"
#include "ZellBase/Error.h"
#include "ZellPlayback/PlatformWatermark.h"

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <thread>

using testing::HasSubstr;
using testing::IsEmpty;
using Zell::Base::Error::GetLastError;
using Zell::Base::Error::SetLastError;
using ZellAssetBook::CWaterMark;

namespace {

class PlatformWatermark : public VideoTest
{
protected:
    PlatformWatermark()
    {
        std::filesystem::create_directories(DataFolder());
        config_.SetVal_transparency(0);
        config_.SetVal_rotation_angle(0);
        config_.SetVal_space(10);
        config_.SetVal_bench_width(320);
        config_.SetVal_bench_height(240);
        config_.SetVal_font_size(20);
        Save();
    }

    void Save()
    {
        std::string reason;
        ASSERT_TRUE(ZellAssetBook::SaveWaterMark(ZellAssetBook::WaterMarkFilePath(), config_, reason))
            << reason;
    }
    int Add(const std::string& text, int kind, const std::string& source = "in.mp4",
            const std::string& target = "out.mp4")
    {
        SetLastError({});
        return AddPlatformWatermarkToVideoFile(File(source), text, kind, File(target));
    }
    // Where the text of that kind stands in a black picture of 320 by 240.
    clips::Box BoxOfKind(int kind)
    {
        EXPECT_EQ(Add("Hall", kind), 0);
        return clips::BrighterThan(clips::Pictures(File("out.mp4"))[5], 60);
    }
    void ExpectFailure(int result, int expected)
    {
        EXPECT_EQ(result, expected);
        EXPECT_NE(GetLastError().iSecondCode, 0);
        EXPECT_FALSE(std::filesystem::exists(File("out.mp4")));
        EXPECT_THAT(WorkFiles(), IsEmpty());
    }

    CWaterMark config_;
};

}  // namespace

TEST_F(PlatformWatermark, KeepsPicturesAndSound)
{
    clips::MakeMoving(File("in.mp4"), 2);
    ASSERT_EQ(Add("Hall", 0), 0);
    EXPECT_EQ(clips::Look(File("out.mp4")).Of("video").packets, 50);
    EXPECT_EQ(clips::Look(File("out.mp4")).Of("audio").packet_hash,
              clips::Look(File("in.mp4")).Of("audio").packet_hash);
    EXPECT_EQ(GetLastError().iSecondCode, 0);
}

TEST_F(PlatformWatermark, GoesOverTheWholePictureAsKind0AndAnyUnknown)
{
    clips::MakePlain(File("in.mp4"), "black", 1);
    for (const int kind : {0, 6, -1}) {
        const clips::Box box = BoxOfKind(kind);
        EXPECT_LT(box.left, 60) << kind;
        EXPECT_GT(box.right, 260) << kind;
        EXPECT_LT(box.top, 30) << kind;
        EXPECT_GT(box.bottom, 210) << kind;
    }
}

TEST_F(PlatformWatermark, GoesIntoTheCornersAndTheMiddleByKind)
{
    clips::MakePlain(File("in.mp4"), "black", 1);
    const clips::Box top_left = BoxOfKind(1);
    EXPECT_LT(top_left.right, 80);
    EXPECT_LT(top_left.bottom, 60);
    const clips::Box top_right = BoxOfKind(2);
    EXPECT_GT(top_right.left, 240);
    EXPECT_LT(top_right.bottom, 60);
    const clips::Box bottom_left = BoxOfKind(3);
    EXPECT_LT(bottom_left.right, 80);
    EXPECT_GT(bottom_left.top, 180);
    const clips::Box bottom_right = BoxOfKind(4);
    EXPECT_GT(bottom_right.left, 240);
    EXPECT_GT(bottom_right.top, 180);
    const clips::Box middle = BoxOfKind(5);
    EXPECT_NEAR((middle.left + middle.right) / 2, 160, 3);
    EXPECT_NEAR((middle.top + middle.bottom) / 2, 120, 8);
}

TEST_F(PlatformWatermark, HasTheConfiguredColour)
{
    clips::MakePlain(File("in.mp4"), "black", 1);
    config_.SetVal_color(0, 200, 0);
    Save();
    ASSERT_EQ(Add("\xE2\x96\x88\xE2\x96\x88\xE2\x96\x88", 5), 0);
    const std::array<int, 3> colour = clips::Pictures(File("out.mp4"))[5].At(160, 120);
    EXPECT_LT(colour[0], 40);
    EXPECT_NEAR(colour[1], 200, 20);
    EXPECT_LT(colour[2], 40);
}

TEST_F(PlatformWatermark, TakesTheConfiguredTextInPlaceOfNone)
{
    clips::MakePlain(File("in.mp4"), "black", 1);
    ExpectFailure(Add("", 0), 5);
    EXPECT_THAT(LogLines(), testing::Contains(HasSubstr("no watermark text")));
    config_.SetVal_custom_content("Hall");
    Save();
    ASSERT_EQ(Add("", 0), 0);
    EXPECT_FALSE(clips::BrighterThan(clips::Pictures(File("out.mp4"))[5], 60).IsEmpty());
}

TEST_F(PlatformWatermark, TellsOfASourceThatCannotBeRead)
{
    ExpectFailure(Add("Hall", 0, "missing.mp4"), 1);
    EXPECT_EQ(GetLastError().iFirstCode, 0);
    EXPECT_EQ(GetLastError().iSecondCode, ENOENT);
    clips::WriteFile(File("in.mp4"), "no video");
    ExpectFailure(Add("Hall", 0), 1);
}

TEST_F(PlatformWatermark, TellsOfAFileWithoutPictures)
{
    clips::Make("-f lavfi -i sine=d=1 -c:a aac", File("in.mp4"));
    ExpectFailure(Add("Hall", 0), 2);
}

TEST_F(PlatformWatermark, TellsOfATargetThatCannotBeWritten)
{
    clips::MakePlain(File("in.mp4"), "black", 1);
    ExpectFailure(Add("Hall", 0, "in.mp4", "no/such/folder/out.mp4"), 3);
}

TEST_F(PlatformWatermark, EndsWith4WhenItIsStopped)
{
    clips::MakeMoving(File("in.mp4"), 60, "640x360");
    for (int round = 0; round < 5; ++round) {
        std::atomic<bool> has_ended{false};
        int result = 0;
        std::thread worker([&] {
            result = Add("Hall", 0);
            EXPECT_EQ(GetLastError().iSecondCode, 3209);
            has_ended = true;
        });
        while (!has_ended) {
            StopPlatformWatermarkToVideoFile(File("in.mp4"));
            std::this_thread::yield();
        }
        worker.join();
        EXPECT_EQ(result, 4);
        EXPECT_FALSE(std::filesystem::exists(File("out.mp4")));
        EXPECT_THAT(WorkFiles(), IsEmpty());
    }
}

TEST_F(PlatformWatermark, IsLeftAloneByAStopBeforeAndOneForAnotherFile)
{
    clips::MakeMoving(File("in.mp4"), 2);
    StopPlatformWatermarkToVideoFile(File("in.mp4"));
    std::atomic<bool> has_ended{false};
    std::thread other([&] {
        while (!has_ended) {
            StopPlatformWatermarkToVideoFile(File("other.mp4"));
            std::this_thread::yield();
        }
    });
    EXPECT_EQ(Add("Hall", 0), 0);
    has_ended = true;
    other.join();
}
