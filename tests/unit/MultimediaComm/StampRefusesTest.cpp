// Files that can't be stamped, and what is left behind: nothing.
#include "VideoTest.h"
#include "ZellBase/Error.h"

#include <cerrno>
#include <filesystem>

using namespace Zell::MultimediaComm;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class StampRefuses : public VideoTest
{
protected:
    StampRefuses() { lines_ = {Line("Gate")}; }

    void ExpectRefused(const std::string& source, InfoOverlayErr expected)
    {
        Zell::Base::Error::SetLastError({});
        EXPECT_EQ(Stamp(source, File("out.mp4")), expected);
        EXPECT_NE(Zell::Base::Error::GetLastError().iSecondCode, 0);
        EXPECT_FALSE(std::filesystem::exists(File("out.mp4")));
        EXPECT_THAT(WorkFiles(), IsEmpty());
        EXPECT_THAT(HiddenFiles(), IsEmpty());
        EXPECT_FALSE(LogLines().empty());
    }
};

}  // namespace

TEST_F(StampRefuses, AFileThatIsNotThere)
{
    ExpectRefused(File("missing.mp4"), InfoOverlaySourceUnreadable);
    EXPECT_EQ(Zell::Base::Error::GetLastError().iFirstCode, 0);
    EXPECT_EQ(Zell::Base::Error::GetLastError().iSecondCode, ENOENT);
    EXPECT_THAT(LogLines(), Contains(HasSubstr("missing.mp4")));
}

TEST_F(StampRefuses, AFolder)
{
    std::filesystem::create_directory(File("folder.mp4"));
    ExpectRefused(File("folder.mp4"), InfoOverlaySourceUnreadable);
}

TEST_F(StampRefuses, AnEmptyFile)
{
    clips::WriteFile(File("in.mp4"), "");
    ExpectRefused(File("in.mp4"), InfoOverlaySourceUnreadable);
}

TEST_F(StampRefuses, AFileThatIsNoVideo)
{
    clips::WriteFile(File("in.mp4"), std::string(100'000, 'x'));
    ExpectRefused(File("in.mp4"), InfoOverlaySourceUnreadable);
}

TEST_F(StampRefuses, AFileWithSoundOnly)
{
    clips::Make("-f lavfi -i sine=d=1 -c:a aac", File("in.mp4"));
    ExpectRefused(File("in.mp4"), InfoOverlayNoVideo);
}

TEST_F(StampRefuses, AnMp4WhoseIndexIsCutOff)
{
    const std::string whole = clips::ReadFile(clips::MakeMoving(File("whole.mp4"), 2));
    clips::WriteFile(File("in.mp4"), whole.substr(0, whole.size() / 2));
    ExpectRefused(File("in.mp4"), InfoOverlaySourceUnreadable);
}

TEST_F(StampRefuses, AVideoOfWhichNoPictureCanBeDecoded)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=1 -c:v libx264 -movflags +faststart",
                File("whole.mp4"));
    std::string bytes = clips::ReadFile(File("whole.mp4"));
    const std::size_t pictures = bytes.find("mdat") + 4;
    bytes.replace(pictures, bytes.size() - pictures, bytes.size() - pictures, '\xFF');
    clips::WriteFile(File("in.mp4"), bytes);
    ExpectRefused(File("in.mp4"), InfoOverlayNoVideo);
}

TEST_F(StampRefuses, AListOfOtherFiles)
{
    clips::MakeMoving(File("other.ts"), 1);
    clips::WriteFile(File("in.mp4"), "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n" + File("other.ts") +
                                         "\n#EXT-X-ENDLIST\n");
    ExpectRefused(File("in.mp4"), InfoOverlaySourceUnreadable);
    clips::WriteFile(File("in.mp4"), "ffconcat version 1.0\nfile other.ts\n");
    EXPECT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlaySourceUnreadable);
}

TEST_F(StampRefuses, AnAddressInPlaceOfAPath)
{
    ExpectRefused("http://127.0.0.1:1/in.mp4", InfoOverlaySourceUnreadable);
    clips::MakeMoving(File("in.mp4"), 1);
    ExpectRefused("concat:" + File("in.mp4"), InfoOverlaySourceUnreadable);
}

TEST_F(StampRefuses, TheSourceAsItsOwnTarget)
{
    clips::MakeMoving(File("in.mp4"), 1);
    const std::string before = clips::ReadFile(File("in.mp4"));
    EXPECT_EQ(Stamp(File("in.mp4"), File("in.mp4")), InfoOverlayTargetUnwritable);
    EXPECT_EQ(clips::ReadFile(File("in.mp4")), before);
}

TEST_F(StampRefuses, ATargetThatCannotBe)
{
    clips::MakeMoving(File("in.mp4"), 1);
    EXPECT_EQ(Stamp(File("in.mp4"), File("no/such/folder/out.mp4")), InfoOverlayTargetUnwritable);
    EXPECT_EQ(Stamp(File("in.mp4"), ""), InfoOverlayTargetUnwritable);
    std::filesystem::create_directory(File("folder.mp4"));
    EXPECT_EQ(Stamp(File("in.mp4"), File("folder.mp4")), InfoOverlayTargetUnwritable);
    EXPECT_THAT(WorkFiles(), IsEmpty());
}

TEST_F(StampRefuses, AClientWithoutAPlaceForItsWork)
{
    clips::WriteFile(DataFolder(), "a file where the folder is to be");
    clips::MakeMoving(File("in.mp4"), 1);
    ExpectRefused(File("in.mp4"), InfoOverlayTargetUnwritable);
}

TEST_F(StampRefuses, NothingOfARecordingThatBreaksOff)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=4 -c:v libx264 -g 10 -movflags +faststart",
                File("whole.mp4"));
    const std::string whole = clips::ReadFile(File("whole.mp4"));
    clips::WriteFile(File("in.mp4"), whole.substr(0, whole.size() / 2));
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    const std::size_t pictures = clips::Pictures(File("out.mp4")).size();
    EXPECT_GT(pictures, 20u);
    EXPECT_LT(pictures, 90u);
}

TEST_F(StampRefuses, NothingOfARecordingWithDamageInTheMiddle)
{
    clips::Make("-f lavfi -i testsrc2=s=320x240:r=25:d=4 -c:v libx264 -g 10 -movflags +faststart",
                File("whole.mp4"));
    std::string bytes = clips::ReadFile(File("whole.mp4"));
    bytes.replace(bytes.size() / 2, 3000, 3000, '\xFF');
    clips::WriteFile(File("in.mp4"), bytes);
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    EXPECT_GT(clips::Pictures(File("out.mp4")).size(), 60u);
}

TEST_F(StampRefuses, NothingOfARecordingWithAGap)
{
    clips::Make(
        "-f lavfi -i testsrc2=s=320x240:r=25:d=4 -vf \"select='lt(t,1)+gte(t,3)'\" -vsync vfr -bf 0 -c:v "
        "libx264",
        File("in.mp4"));
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    const std::vector<clips::Picture> pictures = clips::Pictures(File("out.mp4"));
    ASSERT_EQ(pictures.size(), 50u);
    EXPECT_NEAR(pictures[24].seconds, 0.96, 0.001);
    EXPECT_NEAR(pictures[25].seconds, 3.0, 0.001);
}
