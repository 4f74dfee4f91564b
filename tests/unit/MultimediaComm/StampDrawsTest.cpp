// What a stamp puts where.
#include "VideoTest.h"

#include <QByteArray>

#include <cmath>
#include <filesystem>

using namespace Zell::MultimediaComm;
using testing::Contains;
using testing::HasSubstr;

namespace {

class StampDraws : public VideoTest
{
protected:
    void SetUp() override { clips::MakePlain(File("black.mp4"), "black", 2); }

    std::vector<clips::Picture> Stamped(const std::string& source = "black.mp4")
    {
        EXPECT_EQ(Stamp(File(source), File("out.mp4")), InfoOverlayDone);
        return clips::Pictures(File("out.mp4"));
    }
    clips::Box TextBox() { return clips::BrighterThan(Stamped()[10], 100); }

    static InfoOverlayLineArray Placed(int x_type, int x, int y_type, int y)
    {
        InfoOverlayLineArray line = Line("Hall", x, y);
        line.SetPosXType(x_type);
        line.SetPosYType(y_type);
        return line;
    }
};

}  // namespace

TEST_F(StampDraws, ALineFromTheLeftAndTheTop)
{
    lines_ = {Placed(0, 30, 0, 50)};
    const clips::Box box = TextBox();
    EXPECT_NEAR(box.left, 30, 6);
    EXPECT_GE(box.top, 50);
    EXPECT_LE(box.bottom, 90);
    EXPECT_GT(box.bottom - box.top, 15);
    EXPECT_LT(box.right, 150);
}

TEST_F(StampDraws, ALineFromTheRightAndTheBottom)
{
    lines_ = {Placed(1, 30, 1, 50)};
    const clips::Box box = TextBox();
    EXPECT_NEAR(box.right, 320 - 30, 6);
    EXPECT_LE(box.bottom, 240 - 50);
    EXPECT_GE(box.bottom, 240 - 50 - 25);
}

TEST_F(StampDraws, ALineFromTheMiddle)
{
    lines_ = {Placed(2, 40, 2, -60)};
    const clips::Box box = TextBox();
    EXPECT_NEAR((box.left + box.right) / 2.0, 200, 3);
    EXPECT_NEAR((box.top + box.bottom) / 2.0, 60, 8);
}

TEST_F(StampDraws, ALineByPartsOfThePicture)
{
    lines_ = {Placed(10, 5000, 11, 2500)};
    const clips::Box box = TextBox();
    EXPECT_NEAR(box.left, 160, 6);
    EXPECT_LE(box.bottom, 180);
    EXPECT_GE(box.bottom, 155);
    lines_ = {Placed(12, 2500, 12, 0)};
    EXPECT_NEAR((TextBox().left + TextBox().right) / 2.0, 240, 3);
}

TEST_F(StampDraws, AnUnknownPositionAtTheCorner)
{
    lines_ = {Placed(-1, -1, -1, -1)};
    const clips::Box box = TextBox();
    EXPECT_LT(box.left, 8);
    EXPECT_LT(box.top, 20);
}

TEST_F(StampDraws, LettersOfTheSizeAskedFor)
{
    lines_ = {Line("H", 0, 0, 100)};
    const clips::Box large = TextBox();
    lines_ = {Line("H", 0, 0, 25)};
    const clips::Box small = TextBox();
    EXPECT_NEAR((large.bottom - large.top + 1.0) / (small.bottom - small.top + 1.0), 4.0, 0.8);
}

TEST_F(StampDraws, LettersOfASizeOfTheirOwnWithoutOne)
{
    lines_ = {Line("H", 0, 0, -1)};
    const clips::Box box = TextBox();
    EXPECT_LE(box.bottom, 12);
    EXPECT_GE(box.bottom - box.top, 4);
}

TEST_F(StampDraws, LettersInTheirColour)
{
    lines_ = {Line("\xE2\x96\x88\xE2\x96\x88", 50, 50, 80)};
    lines_[0].SetColorRGB({200, 40, 10});
    const std::array<int, 3> colour = Stamped()[10].At(80, 95);
    EXPECT_NEAR(colour[0], 200, 12);
    EXPECT_NEAR(colour[1], 40, 12);
    EXPECT_NEAR(colour[2], 10, 12);
}

TEST_F(StampDraws, HalfOfAColourThatIsHalfTransparent)
{
    lines_ = {Line("\xE2\x96\x88\xE2\x96\x88", 50, 50, 80)};
    lines_[0].SetTransparencyNum(50);
    const std::array<int, 3> colour = Stamped()[10].At(80, 95);
    EXPECT_NEAR(colour[0], 128, 12);
    EXPECT_NEAR(colour[1], 128, 12);
    EXPECT_NEAR(colour[2], 128, 12);
}

TEST_F(StampDraws, NothingOfALineThatIsWhollyTransparent)
{
    lines_ = {Line("Hall", 50, 50)};
    lines_[0].SetTransparencyNum(100);
    EXPECT_TRUE(clips::BrighterThan(Stamped()[10], 20).IsEmpty());
}

TEST_F(StampDraws, AColourThatWasLeftOutInWhite)
{
    lines_ = {Line("\xE2\x96\x88\xE2\x96\x88", 50, 50, 80)};
    lines_[0].SetColorRGB({-1, -1, -1});
    EXPECT_GT(Stamped()[10].Brightness(80, 95), 240);
}

TEST_F(StampDraws, ALineInItsTimeOnly)
{
    lines_ = {Line("Hall")};
    lines_[0].SetBeginMilliSecond(400);
    lines_[0].SetEndMilliSecond(1200);
    const std::vector<clips::Picture> pictures = Stamped();
    ASSERT_EQ(pictures.size(), 50u);
    std::vector<std::size_t> shown;
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        if (!clips::BrighterThan(pictures[i], 100).IsEmpty())
            shown.push_back(i);
    }
    // 40 ms a picture: 400 belongs to it, 1200 does not.
    ASSERT_EQ(shown.size(), 20u);
    EXPECT_EQ(shown.front(), 10u);
    EXPECT_EQ(shown.back(), 29u);
}

TEST_F(StampDraws, ALineWithoutAnEndToTheEnd)
{
    lines_ = {Line("Hall")};
    lines_[0].SetBeginMilliSecond(-1);
    lines_[0].SetEndMilliSecond(-1);
    const std::vector<clips::Picture> pictures = Stamped();
    EXPECT_FALSE(clips::BrighterThan(pictures.front(), 100).IsEmpty());
    EXPECT_FALSE(clips::BrighterThan(pictures.back(), 100).IsEmpty());
}

TEST_F(StampDraws, LinesOfABlockBelowEachOther)
{
    line_array_type_ = 1;
    lines_ = {Placed(0, 20, 0, 40), Placed(1, 0, 1, 0)};
    const clips::Box box = TextBox();
    EXPECT_NEAR(box.left, 20, 6);
    EXPECT_GE(box.top, 40);
    EXPECT_GT(box.bottom, 90);
    EXPECT_LE(box.bottom, 120);
    EXPECT_LT(box.right, 150);
}

TEST_F(StampDraws, ABlockThatStandsOnTheBottomWholly)
{
    line_array_type_ = 1;
    lines_ = {Placed(0, 20, 1, 0), Placed(0, 0, 0, 0)};
    const clips::Box box = TextBox();
    EXPECT_GE(box.top, 160);
    EXPECT_GT(box.bottom, 220);
}

TEST_F(StampDraws, EachLineOfNoBlockAtItsOwnPlace)
{
    lines_ = {Placed(0, 0, 0, 0), Placed(1, 0, 1, 0)};
    const clips::Box box = TextBox();
    EXPECT_LT(box.left, 10);
    EXPECT_LT(box.top, 20);
    EXPECT_GT(box.right, 310);
    EXPECT_GT(box.bottom, 215);
}

TEST_F(StampDraws, ATextThatIsTooWideSmaller)
{
    lines_ = {Line(std::string(60, 'W'), 20, 20, 40)};
    const clips::Box box = TextBox();
    EXPECT_LT(box.right, 320);
    EXPECT_GT(box.right, 280);
    EXPECT_LT(box.bottom - box.top, 15);
}

TEST_F(StampDraws, TextThatLooksLikeCommandsAsText)
{
    lines_ = {Line("{\\pos(0,0)\\fs5}", 60, 100)};
    const clips::Box box = TextBox();
    EXPECT_GT(box.top, 95);
    EXPECT_GT(box.right - box.left, 180);
}

TEST_F(StampDraws, TheWatermarkOverTheWholePicture)
{
    watermark_ = Watermark("secret");
    const clips::Picture picture = Stamped()[10];
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 2; ++column) {
            int bright = 0;
            for (int y = row * 80; y < row * 80 + 80; ++y) {
                for (int x = column * 160; x < column * 160 + 160; ++x)
                    bright += picture.Brightness(x, y) > 100 ? 1 : 0;
            }
            EXPECT_GT(bright, 50) << row << " " << column;
        }
    }
}

TEST_F(StampDraws, NoWatermarkThatIsSwitchedOff)
{
    watermark_ = Watermark("secret");
    watermark_.SetVal_b_enable(false);
    EXPECT_TRUE(clips::BrighterThan(Stamped()[10], 20).IsEmpty());
}

TEST_F(StampDraws, AWatermarkInProportionToThePicture)
{
    watermark_ = Watermark("x");
    watermark_.SetVal_font_size(60);
    watermark_.SetVal_space(10000);
    const clips::Box whole = TextBox();
    watermark_.SetVal_bench_width(640);
    watermark_.SetVal_bench_height(480);
    const clips::Box half = TextBox();
    EXPECT_NEAR((whole.right - whole.left + 1.0) / (half.right - half.left + 1.0), 2.0, 0.35);
}

TEST_F(StampDraws, AWatermarkTurnedAgainstTheClock)
{
    watermark_ = Watermark("IIIIIIIIIIIIIIII");
    watermark_.SetVal_space(10000);
    watermark_.SetVal_rotation_angle(90);
    const clips::Box upright = TextBox();
    EXPECT_GT(upright.bottom - upright.top, 3 * (upright.right - upright.left));
    watermark_.SetVal_rotation_angle(45);
    const clips::Picture picture = Stamped()[10];
    const clips::Box box = clips::BrighterThan(picture, 100);
    // It rises to the right: the right half has its letters above those of the left half.
    double left = 0;
    double right = 0;
    double left_count = 0;
    double right_count = 0;
    for (int y = box.top; y <= box.bottom; ++y) {
        for (int x = box.left; x <= box.right; ++x) {
            if (picture.Brightness(x, y) <= 100)
                continue;
            (x < (box.left + box.right) / 2 ? left : right) += y;
            (x < (box.left + box.right) / 2 ? left_count : right_count) += 1;
        }
    }
    EXPECT_LT(right / right_count, left / left_count);
}

TEST_F(StampDraws, MoreCopiesOfAWatermarkWithLessSpace)
{
    const auto bright = [this] {
        const clips::Picture picture = Stamped()[10];
        int count = 0;
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x)
                count += picture.Brightness(x, y) > 100 ? 1 : 0;
        }
        return count;
    };
    watermark_ = Watermark("secret");
    watermark_.SetVal_space(0);
    const int dense = bright();
    watermark_.SetVal_space(80);
    EXPECT_GT(dense, 2 * bright());
}

TEST_F(StampDraws, AWatermarkWithoutAnySizeInAReasonableTime)
{
    watermark_ = Watermark(".");
    watermark_.SetVal_font_size(1);
    watermark_.SetVal_space(-5);
    EXPECT_EQ(Stamped().size(), 50u);
}

TEST_F(StampDraws, AnAdaptingWatermarkDarkOnLightAndLightOnDark)
{
    watermark_ = Watermark("secret");
    watermark_.SetVal_b_auto_adapt(true);
    EXPECT_FALSE(clips::BrighterThan(Stamped()[10], 200).IsEmpty());
    clips::MakePlain(File("white.mp4"), "white", 1);
    const clips::Picture picture = Stamped("white.mp4")[10];
    int dark = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x)
            dark += picture.Brightness(x, y) < 60 ? 1 : 0;
    }
    EXPECT_GT(dark, 200);
}

TEST_F(StampDraws, AnAdaptingWatermarkAnewWhenThePictureChanges)
{
    clips::Make(
        "-f lavfi -i color=c=black:s=320x240:r=25:d=1 -f lavfi -i color=c=white:s=320x240:r=25:d=2 "
        "-filter_complex "
        "concat=n=2 -pix_fmt yuv420p -c:v libx264",
        File("change.mp4"));
    watermark_ = Watermark("secret");
    watermark_.SetVal_b_auto_adapt(true);
    const std::vector<clips::Picture> pictures = Stamped("change.mp4");
    ASSERT_EQ(pictures.size(), 75u);
    EXPECT_FALSE(clips::BrighterThan(pictures[10], 200).IsEmpty());
    int dark = 0;
    for (int x = 0; x < 320; ++x) {
        for (int y = 0; y < 240; ++y)
            dark += pictures[70].Brightness(x, y) < 60 ? 1 : 0;
    }
    EXPECT_GT(dark, 200);
}

TEST_F(StampDraws, ALetterThatNoFontHasAndTellsOfIt)
{
    lines_ = {Line("\xF4\x8F\xBF\xBD")};  // of the private use area
    EXPECT_EQ(Stamped().size(), 50u);
    EXPECT_THAT(LogLines(), Contains(HasSubstr("U+10FFFD")));
}

TEST_F(StampDraws, NothingWithoutAnyFontButTellsOfIt)
{
    clips::WriteFile(File("fonts.conf"), "<?xml version=\"1.0\"?><fontconfig></fontconfig>");
    const QByteArray before = qgetenv("FONTCONFIG_FILE");
    qputenv("FONTCONFIG_FILE", QByteArray::fromStdString(File("fonts.conf")));
    lines_ = {Line("Hall")};
    const InfoOverlayErr result = Stamp(File("black.mp4"), File("out.mp4"));
    if (before.isNull())
        qunsetenv("FONTCONFIG_FILE");
    else
        qputenv("FONTCONFIG_FILE", before);
    EXPECT_EQ(result, InfoOverlayTextUndrawable);
    EXPECT_THAT(LogLines(), Contains(HasSubstr("no font")));
    EXPECT_FALSE(std::filesystem::exists(File("out.mp4")));
}
