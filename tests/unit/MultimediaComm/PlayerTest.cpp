#include "MultimediaComm/PlayLocalFileEx.h"
#include "VideoTest.h"
#include "ZellBase/Error.h"

using Zell::MultimediaComm::CPlayLocalFileEx;

namespace {

constexpr auto kUnknown = static_cast<unsigned long>(-1);

class Player : public VideoTest
{
protected:
    // The picture that was captured, as the test's own reader sees it.
    clips::Picture Captured(const std::string& jpeg)
    {
        clips::WriteFile(File("captured.jpg"), jpeg);
        return clips::Pictures(File("captured.jpg")).at(0);
    }
};

}  // namespace

TEST_F(Player, TellsTheLengthInMilliseconds)
{
    clips::MakeMoving(File("in.mp4"), 3);
    CPlayLocalFileEx player;
    long port = 0;
    ASSERT_TRUE(player.StartPlayLocalFile(port, File("in.mp4"), nullptr, 0));
    EXPECT_GE(port, 1);
    EXPECT_NEAR(static_cast<double>(player.GetFileTime(port)), 3000, 30);
    player.StopLocalFilePlay(port);
    EXPECT_EQ(player.GetFileTime(port), kUnknown);
}

TEST_F(Player, CapturesThePictureAsJpeg)
{
    clips::MakeMoving(File("in.mp4"), 1);
    CPlayLocalFileEx player;
    long port = 0;
    ASSERT_TRUE(player.StartPlayLocalFile(port, File("in.mp4"), nullptr, 0));
    std::string jpeg;
    ASSERT_TRUE(player.CaptureImage(jpeg, port, 1));
    EXPECT_EQ(jpeg.substr(0, 3), "\xFF\xD8\xFF");
    const clips::Picture picture = Captured(jpeg);
    EXPECT_EQ(picture.width, 320);
    EXPECT_LT(clips::DistanceOutside(clips::Pictures(File("in.mp4"))[0], picture, {}), 4.0);
    std::string again;
    EXPECT_TRUE(player.CaptureImage(again, port, 1));
    EXPECT_EQ(again, jpeg);
}

TEST_F(Player, CapturesARotatedVideoUpright)
{
    clips::Make(
        "-f lavfi -i color=c=black:s=320x240:r=25:d=1 -vf drawbox=x=0:y=0:w=40:h=40:color=white:t=fill "
        "-pix_fmt "
        "yuv420p -c:v libx264",
        File("flat.mp4"));
    for (const int degrees : {90, 180, 270}) {
        clips::Make("-i \"" + File("flat.mp4") + "\" -c copy -metadata:s:v rotate=" + std::to_string(degrees),
                    File("in.mp4"));
        // What the ffmpeg command shows, which turns as a player does.
        clips::Make("-i \"" + File("in.mp4") + "\" -frames:v 1", File("shown.png"));
        CPlayLocalFileEx player;
        long port = 0;
        ASSERT_TRUE(player.StartPlayLocalFile(port, File("in.mp4"), nullptr, 0));
        std::string jpeg;
        ASSERT_TRUE(player.CaptureImage(jpeg, port, 1));
        const clips::Picture shown = clips::Pictures(File("shown.png")).at(0);
        const clips::Picture picture = Captured(jpeg);
        ASSERT_EQ(picture.width, shown.width) << degrees;
        EXPECT_LT(clips::DistanceOutside(shown, picture, {}), 4.0) << degrees;
    }
}

TEST_F(Player, KeepsSeveralPortsApart)
{
    clips::MakePlain(File("one.mp4"), "red", 1);
    clips::MakePlain(File("two.mp4"), "blue", 2);
    CPlayLocalFileEx player;
    long one = 0;
    long two = 0;
    ASSERT_TRUE(player.StartPlayLocalFile(one, File("one.mp4"), nullptr, 0));
    ASSERT_TRUE(player.StartPlayLocalFile(two, File("two.mp4"), nullptr, 0));
    EXPECT_NE(one, two);
    EXPECT_NEAR(static_cast<double>(player.GetFileTime(one)), 1000, 30);
    player.StopLocalFilePlay(one);
    player.StopLocalFilePlay(one);
    EXPECT_NEAR(static_cast<double>(player.GetFileTime(two)), 2000, 30);
    std::string jpeg;
    EXPECT_FALSE(player.CaptureImage(jpeg, one, 1));
    ASSERT_TRUE(player.CaptureImage(jpeg, two, 1));
    EXPECT_GT(Captured(jpeg).At(100, 100)[2], 200);
}

TEST_F(Player, RefusesFilesThatHoldNoVideo)
{
    clips::WriteFile(File("in.mp4"), "no video");
    CPlayLocalFileEx player;
    long port = 7;
    EXPECT_FALSE(player.StartPlayLocalFile(port, File("in.mp4"), nullptr, 0));
    EXPECT_EQ(port, -1);
    EXPECT_FALSE(player.StartPlayLocalFile(port, File("missing.mp4"), nullptr, 0));
    EXPECT_EQ(Zell::Base::Error::GetLastError().iFirstCode, 0);
    player.StopLocalFilePlay(port);
    EXPECT_EQ(player.GetFileTime(port), kUnknown);
    std::string jpeg = "as it was";
    EXPECT_FALSE(player.CaptureImage(jpeg, port, 1));
    EXPECT_EQ(jpeg, "as it was");
}

TEST_F(Player, KnowsNoOtherKindOfPicture)
{
    clips::MakePlain(File("in.mp4"), "red", 1);
    CPlayLocalFileEx player;
    long port = 0;
    ASSERT_TRUE(player.StartPlayLocalFile(port, File("in.mp4"), nullptr, 0));
    std::string data;
    EXPECT_FALSE(player.CaptureImage(data, port, 2));
}
