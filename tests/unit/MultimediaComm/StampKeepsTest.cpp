// What of a video stays as it was when it is stamped.
#include "VideoTest.h"

#include <cmath>

using namespace Zell::MultimediaComm;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class StampKeeps : public VideoTest
{
protected:
    StampKeeps() { lines_ = {Line("Gate", 10, 10, 30)}; }

    void ExpectSameTimes(const std::string& source, const std::string& target)
    {
        const std::vector<clips::Picture> before = clips::Pictures(source);
        const std::vector<clips::Picture> after = clips::Pictures(target);
        ASSERT_EQ(after.size(), before.size());
        for (std::size_t i = 0; i < after.size(); ++i)
            EXPECT_NEAR(after[i].seconds - after[0].seconds, before[i].seconds - before[0].seconds, 0.0005)
                << "picture " << i;
    }

    static constexpr clips::Box kTextBox = {0, 0, 140, 50};
};

}  // namespace

TEST_F(StampKeeps, NumberTimesAndLengthOfThePictures)
{
    const std::string source = clips::MakeMoving(File("in.mp4"), 2);
    ASSERT_EQ(Stamp(source, File("out.mp4")), InfoOverlayDone);
    ExpectSameTimes(source, File("out.mp4"));
    const clips::FileFacts facts = clips::Look(File("out.mp4"));
    EXPECT_THAT(facts.form, HasSubstr("mp4"));
    EXPECT_NEAR(facts.seconds, clips::Look(source).seconds, 0.001);
    EXPECT_EQ(facts.Of("video").codec, "h264");
    EXPECT_EQ(facts.Of("video").packets, 50);
}

TEST_F(StampKeeps, SoundToTheByte)
{
    const std::string source = clips::MakeMoving(File("in.mp4"), 2);
    ASSERT_EQ(Stamp(source, File("out.mp4")), InfoOverlayDone);
    const clips::StreamFacts before = clips::Look(source).Of("audio");
    const clips::StreamFacts after = clips::Look(File("out.mp4")).Of("audio");
    EXPECT_EQ(after.codec, "aac");
    EXPECT_EQ(after.packets, before.packets);
    EXPECT_EQ(after.packet_hash, before.packet_hash);
}

TEST_F(StampKeeps, AVideoWithoutSoundWithoutSound)
{
    const std::string source = clips::MakePlain(File("in.mp4"), "blue", 1);
    ASSERT_EQ(Stamp(source, File("out.mp4")), InfoOverlayDone);
    EXPECT_EQ(clips::Look(File("out.mp4")).streams.size(), 1u);
}

TEST_F(StampKeeps, ColoursOutsideOfTheText)
{
    const std::string source = clips::MakeMoving(File("in.mp4"), 1);
    ASSERT_EQ(Stamp(source, File("out.mp4")), InfoOverlayDone);
    const std::vector<clips::Picture> before = clips::Pictures(source);
    const std::vector<clips::Picture> after = clips::Pictures(File("out.mp4"));
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < after.size(); i += 6)
        EXPECT_LT(clips::DistanceOutside(before[i], after[i], kTextBox), 3.0) << "picture " << i;
    EXPECT_GT(clips::DistanceOutside(before[0], after[0], {141, 0, 319, 239}), 3.0);
}

TEST_F(StampKeeps, TheMeaningOfTheColours)
{
    clips::Make(
        "-f lavfi -i testsrc2=s=320x240:r=25:d=1 -vf scale=out_color_matrix=bt709:out_range=pc -pix_fmt "
        "yuvj420p -color_range pc -colorspace bt709 -color_primaries bt709 -color_trc bt709 -c:v libx264 "
        "-preset ultrafast",
        File("in.mp4"));
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    const clips::StreamFacts facts = clips::Look(File("out.mp4")).Of("video");
    EXPECT_EQ(facts.range, "pc");
    EXPECT_EQ(facts.space, "bt709");
    EXPECT_EQ(facts.primaries, "bt709");
    EXPECT_EQ(facts.transfer, "bt709");
    EXPECT_LT(clips::DistanceOutside(clips::Pictures(File("in.mp4"))[5], clips::Pictures(File("out.mp4"))[5],
                                     kTextBox),
              3.0);
}

TEST_F(StampKeeps, TheRotationAndWritesUprightForTheViewer)
{
    clips::MakePlain(File("flat.mp4"), "black", 1);
    clips::Make("-i \"" + File("flat.mp4") + "\" -c copy -metadata:s:v rotate=90", File("in.mp4"));
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    const clips::StreamFacts facts = clips::Look(File("out.mp4")).Of("video");
    EXPECT_EQ(facts.quarter_turns, clips::Look(File("in.mp4")).Of("video").quarter_turns);
    EXPECT_EQ(facts.width, 320);
    // Turned against the clock, what a viewer sees at the top left is stored at the top right, from top to
    // bottom.
    EXPECT_EQ(facts.quarter_turns, -1);
    const clips::Box box = clips::BrighterThan(clips::Pictures(File("out.mp4"))[5], 100);
    EXPECT_GT(box.left, 270);
    EXPECT_LT(box.top, 20);
    EXPECT_GT(box.bottom - box.top, box.right - box.left);
}

TEST_F(StampKeeps, TimesOfPicturesThatComeNowAndThen)
{
    clips::Make(
        "-f lavfi -i testsrc2=s=320x240:r=30:d=3 -vf \"select='lt(n,30)+not(mod(n,7))'\" -vsync vfr -c:v "
        "libx264 -bf 0",
        File("in.mp4"));
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    ExpectSameTimes(File("in.mp4"), File("out.mp4"));
}

TEST_F(StampKeeps, TheOrderOfPicturesThatAreStoredInAnother)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=2 -c:v libx264 -bf 3", File("in.mp4"));
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    ExpectSameTimes(File("in.mp4"), File("out.mp4"));
    const std::vector<clips::Picture> before = clips::Pictures(File("in.mp4"));
    const std::vector<clips::Picture> after = clips::Pictures(File("out.mp4"));
    for (std::size_t i = 0; i < after.size(); ++i)
        EXPECT_LT(clips::DistanceOutside(before[i], after[i], kTextBox), 4.0) << "picture " << i;
}

TEST_F(StampKeeps, AnAviAnAvi)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=1 -f lavfi -i sine=d=1 -c:v mjpeg -c:a pcm_s16le",
                File("in.avi"));
    ASSERT_EQ(Stamp(File("in.avi"), File("out.avi")), InfoOverlayDone);
    const clips::FileFacts facts = clips::Look(File("out.avi"));
    EXPECT_EQ(facts.form, "avi");
    EXPECT_EQ(facts.Of("video").codec, "h264");
    EXPECT_EQ(facts.Of("audio").packet_hash, clips::Look(File("in.avi")).Of("audio").packet_hash);
    ExpectSameTimes(File("in.avi"), File("out.avi"));
}

TEST_F(StampKeeps, TheFormWhereTheTargetHasNoExtension)
{
    clips::MakePlain(File("in.mp4"), "blue", 1);
    ASSERT_EQ(Stamp(File("in.mp4"), File("out")), InfoOverlayDone);
    EXPECT_THAT(clips::Look(File("out")).form, HasSubstr("mp4"));
    clips::Make("-i \"" + File("in.mp4") + "\" -c:v mpeg4", File("in.avi"));
    ASSERT_EQ(Stamp(File("in.avi"), File("other")), InfoOverlayDone);
    EXPECT_EQ(clips::Look(File("other")).form, "avi");
}

TEST_F(StampKeeps, SoundThatTheFormCannotHoldAsAac)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=2 -f lavfi -i sine=d=2 -c:v mpeg4 -c:a pcm_s16le",
                File("in.avi"));
    ASSERT_EQ(Stamp(File("in.avi"), File("out.mp4")), InfoOverlayDone);
    const clips::FileFacts facts = clips::Look(File("out.mp4"));
    EXPECT_EQ(facts.Of("audio").codec, "aac");
    EXPECT_NEAR(facts.seconds, 2.0, 0.06);
}

TEST_F(StampKeeps, APictureOfOddSizeWholeAndOneLarger)
{
    clips::Make("-f lavfi -i testsrc=s=321x241:r=25:d=1 -pix_fmt yuvj420p -c:v mjpeg -q:v 2", File("in.avi"));
    ASSERT_EQ(Stamp(File("in.avi"), File("out.mp4")), InfoOverlayDone);
    const clips::StreamFacts facts = clips::Look(File("out.mp4")).Of("video");
    EXPECT_EQ(facts.width, 322);
    EXPECT_EQ(facts.height, 242);
    const clips::Picture before = clips::Pictures(File("in.avi"))[10];
    const clips::Picture after = clips::Pictures(File("out.mp4"))[10];
    double distance = 0;
    for (int y = 60; y < 241; ++y) {
        for (std::size_t part = 0; part < 3; ++part)
            distance += std::abs(before.At(318, y)[part] - after.At(318, y)[part]);
    }
    EXPECT_LT(distance / (181 * 3), 12.0);
    EXPECT_NEAR(after.Brightness(321, 200), after.Brightness(320, 200), 12);
    EXPECT_NEAR(after.Brightness(200, 241), after.Brightness(200, 240), 12);
}

TEST_F(StampKeeps, ColoursOfAPictureInAnotherPixelForm)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=1 -pix_fmt yuv422p10le -c:v libx264 -preset ultrafast",
                File("in.mp4"));
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    EXPECT_LT(clips::DistanceOutside(clips::Pictures(File("in.mp4"))[5], clips::Pictures(File("out.mp4"))[5],
                                     kTextBox),
              4.0);
}

TEST_F(StampKeeps, TheHalvesOfInterlacedPictures)
{
    clips::Make(
        "-f lavfi -i testsrc2=s=320x240:r=50:d=1 -vf tinterlace=interleave_top -flags +ildct+ilme -c:v "
        "libx264",
        File("in.mp4"));
    ASSERT_TRUE(clips::Look(File("in.mp4")).Of("video").is_interlaced);
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    EXPECT_TRUE(clips::Look(File("out.mp4")).Of("video").is_interlaced);
    ExpectSameTimes(File("in.mp4"), File("out.mp4"));
}

TEST_F(StampKeeps, EverythingToTheByteWhereNothingIsToBeDrawn)
{
    const std::string source = clips::MakeMoving(File("in.mp4"), 1);
    lines_ = {Line(" "), Line("Gate")};
    lines_[1].SetTransparencyNum(100);
    watermark_ = Watermark("");
    ASSERT_EQ(Stamp(source, File("out.mp4")), InfoOverlayDone);
    EXPECT_EQ(clips::Look(File("out.mp4")).Of("video").packet_hash,
              clips::Look(source).Of("video").packet_hash);
    EXPECT_EQ(clips::Look(File("out.mp4")).Of("audio").packet_hash,
              clips::Look(source).Of("audio").packet_hash);
}

TEST_F(StampKeeps, LanguageAndTimeOfTheRecording)
{
    clips::MakeMoving(File("plain.mp4"), 1);
    clips::Make("-i \"" + File("plain.mp4") +
                    "\" -c copy -metadata creation_time=2026-01-02T03:04:05Z -metadata:s:a language=ara",
                File("in.mp4"));
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    const std::string command =
        "ffprobe -v error -show_entries format_tags=creation_time:stream_tags=language \"" + File("out.mp4") +
        "\" > \"" + File("tags.txt") + "\"";
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_THAT(clips::ReadFile(File("tags.txt")), HasSubstr("2026-01-02T03:04:05"));
    EXPECT_THAT(clips::ReadFile(File("tags.txt")), HasSubstr("ara"));
}

TEST_F(StampKeeps, TheSourceItself)
{
    const std::string source = clips::MakeMoving(File("in.mp4"), 1);
    const std::string before = clips::ReadFile(source);
    ASSERT_EQ(Stamp(source, File("out.mp4")), InfoOverlayDone);
    EXPECT_EQ(clips::ReadFile(source), before);
    EXPECT_THAT(WorkFiles(), IsEmpty());
    EXPECT_THAT(HiddenFiles(), IsEmpty());
}

TEST_F(StampKeeps, ATargetThatWasThereUntilTheNewOneIsWhole)
{
    clips::WriteFile(File("out.mp4"), "old");
    EXPECT_NE(Stamp(File("missing.mp4"), File("out.mp4")), InfoOverlayDone);
    EXPECT_EQ(clips::ReadFile(File("out.mp4")), "old");
    clips::MakePlain(File("in.mp4"), "blue", 1);
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    EXPECT_EQ(clips::Pictures(File("out.mp4")).size(), 25u);
}
