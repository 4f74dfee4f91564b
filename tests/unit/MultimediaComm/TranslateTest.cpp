#include "VideoTest.h"
#include "ZellBase/Error.h"

#include <filesystem>

using namespace Zell::MultimediaComm;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class Translate : public VideoTest
{
protected:
    int Run(const std::string& target, const std::string& source)
    {
        std::string path = File(target);
        return CVideoFormatTransfer().Translate(path, File(source), 0, "");
    }

    void ExpectSamePictures(const std::string& source, const std::string& target, double distance)
    {
        const std::vector<clips::Picture> before = clips::Pictures(File(source));
        const std::vector<clips::Picture> after = clips::Pictures(File(target));
        ASSERT_EQ(after.size(), before.size());
        for (std::size_t i = 0; i < after.size(); ++i) {
            EXPECT_LE(clips::DistanceOutside(before[i], after[i], {}), distance) << "picture " << i;
            EXPECT_NEAR(after[i].seconds - after[0].seconds, before[i].seconds - before[0].seconds, 0.001);
        }
    }
};

}  // namespace

TEST_F(Translate, CopiesAnMp4IntoAnAvi)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=2 -f lavfi -i sine=d=2 -c:v libx264 -bf 0 -c:a aac",
                File("in.mp4"));
    ASSERT_EQ(Run("out.avi", "in.mp4"), 0);
    const clips::FileFacts facts = clips::Look(File("out.avi"));
    EXPECT_EQ(facts.form, "avi");
    EXPECT_EQ(facts.Of("video").codec, "h264");
    EXPECT_EQ(facts.Of("audio").packet_hash, clips::Look(File("in.mp4")).Of("audio").packet_hash);
    EXPECT_NEAR(facts.seconds, 2.0, 0.06);
    ExpectSamePictures("in.mp4", "out.avi", 0);
    EXPECT_THAT(WorkFiles(), IsEmpty());
}

TEST_F(Translate, CopiesWhatAStampHasWrittenIntoAnAvi)
{
    clips::MakeMoving(File("in.mp4"), 2);
    lines_ = {Line("Gate")};
    ASSERT_EQ(Stamp(File("in.mp4"), File("stamped.mp4")), InfoOverlayDone);
    ASSERT_EQ(Run("out.avi", "stamped.mp4"), 0);
    ExpectSamePictures("stamped.mp4", "out.avi", 0);
    EXPECT_NEAR(clips::Pictures(File("out.avi")).front().seconds, 0, 0.001);
}

TEST_F(Translate, CopiesAnAviIntoAnMp4)
{
    clips::Make(
        "-f lavfi -i testsrc2=s=320x240:r=25:d=2 -f lavfi -i sine=d=2 -c:v libx264 -bf 0 -c:a libmp3lame",
        File("in.avi"));
    ASSERT_EQ(Run("out.mp4", "in.avi"), 0);
    const clips::FileFacts facts = clips::Look(File("out.mp4"));
    EXPECT_THAT(facts.form, HasSubstr("mp4"));
    EXPECT_EQ(facts.Of("video").codec, "h264");
    EXPECT_EQ(facts.Of("audio").codec, "mp3");
    EXPECT_EQ(facts.Of("audio").packet_hash, clips::Look(File("in.avi")).Of("audio").packet_hash);
    ExpectSamePictures("in.avi", "out.mp4", 0);
}

TEST_F(Translate, KeepsAllPicturesThereAndBack)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=2 -c:v libx264 -bf 0", File("in.mp4"));
    ASSERT_EQ(Run("there.avi", "in.mp4"), 0);
    ASSERT_EQ(Run("back.mp4", "there.avi"), 0);
    ExpectSamePictures("in.mp4", "back.mp4", 0);
}

TEST_F(Translate, CopiesPicturesThatAreStoredInAnotherOrder)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=2 -c:v libx264 -bf 3", File("in.mp4"));
    ASSERT_EQ(Run("out.avi", "in.mp4"), 0);
    const std::vector<clips::Picture> before = clips::Pictures(File("in.mp4"));
    const std::vector<clips::Picture> after = clips::Pictures(File("out.avi"));
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < after.size(); ++i)
        EXPECT_EQ(after[i].rgb, before[i].rgb) << "picture " << i;
}

TEST_F(Translate, EncodesPicturesOfAnAviWhoseTimesAreUnknown)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=2 -c:v libx264 -bf 3", File("in.avi"));
    ASSERT_EQ(Run("out.mp4", "in.avi"), 0);
    const std::vector<clips::Picture> after = clips::Pictures(File("out.mp4"));
    ASSERT_EQ(after.size(), 50u);
    for (std::size_t i = 1; i < after.size(); ++i)
        EXPECT_NEAR(after[i].seconds - after[i - 1].seconds, 0.04, 0.001);
    const std::vector<clips::Picture> before = clips::Pictures(File("in.avi"));
    ASSERT_EQ(before.size(), 50u);
    for (std::size_t i = 0; i < after.size(); ++i)
        EXPECT_LT(clips::DistanceOutside(before[i], after[i], {}), 4.0) << "picture " << i;
}

TEST_F(Translate, EncodesOnlySoundThatAnMp4CannotHold)
{
    clips::Make(
        "-f lavfi -i testsrc2=s=320x240:r=25:d=2 -f lavfi -i sine=d=2 -c:v libx264 -bf 0 -c:a pcm_s16le",
        File("in.avi"));
    ASSERT_EQ(Run("out.mp4", "in.avi"), 0);
    EXPECT_EQ(clips::Look(File("out.mp4")).Of("audio").codec, "aac");
    EXPECT_NEAR(clips::Look(File("out.mp4")).seconds, 2.0, 0.06);
    ExpectSamePictures("in.avi", "out.mp4", 0);
}

TEST_F(Translate, EncodesPicturesThatAnMp4CannotHold)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=1 -c:v wmv2 -q:v 2", File("in.avi"));
    ASSERT_EQ(Run("out.mp4", "in.avi"), 0);
    EXPECT_EQ(clips::Look(File("out.mp4")).Of("video").codec, "h264");
    ExpectSamePictures("in.avi", "out.mp4", 4.0);
}

TEST_F(Translate, KeepsAGapInAnAvi)
{
    clips::Make(
        "-f lavfi -i testsrc2=s=320x240:r=25:d=4 -vf \"select='lt(t,1)+gte(t,3)'\" -vsync vfr -bf 0 -c:v "
        "libx264",
        File("in.mp4"));
    ASSERT_EQ(Run("out.avi", "in.mp4"), 0);
    const std::vector<clips::Picture> pictures = clips::Pictures(File("out.avi"));
    ASSERT_EQ(pictures.size(), 50u);
    EXPECT_NEAR(pictures[25].seconds - pictures[24].seconds, 2.04, 0.001);
}

TEST_F(Translate, RefusesAFileThatIsNoVideo)
{
    clips::WriteFile(File("in.mp4"), std::string(10'000, 'x'));
    EXPECT_EQ(Run("out.avi", "in.mp4"), InfoOverlaySourceUnreadable);
    EXPECT_EQ(Zell::Base::Error::GetLastError().iFirstCode, 20);
    EXPECT_EQ(Run("out.avi", "missing.mp4"), InfoOverlaySourceUnreadable);
    EXPECT_EQ(Zell::Base::Error::GetLastError().iFirstCode, 0);
    EXPECT_FALSE(std::filesystem::exists(File("out.avi")));
    EXPECT_THAT(WorkFiles(), IsEmpty());
}

TEST_F(Translate, RefusesAVideoWithoutAnyPicture)
{
    clips::Make("-f lavfi -i sine=d=1 -c:a aac", File("in.mp4"));
    EXPECT_EQ(Run("out.avi", "in.mp4"), InfoOverlayNoVideo);
    EXPECT_FALSE(std::filesystem::exists(File("out.avi")));
}

TEST_F(Translate, ReplacesATargetThatWasThere)
{
    clips::MakePlain(File("in.mp4"), "blue", 1);
    clips::WriteFile(File("out.avi"), "old");
    ASSERT_EQ(Run("out.avi", "in.mp4"), 0);
    EXPECT_EQ(clips::Look(File("out.avi")).form, "avi");
}
