#include "MultimediaComm/InfoOverlay.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

using Zell::MultimediaComm::InfoOverlay;
using Zell::MultimediaComm::InfoOverlayLineArray;

namespace {

InfoOverlayLineArray FullLine()
{
    InfoOverlayLineArray line;
    line.SetFontSize(1);
    line.SetColorRGB({2, 3, 4});
    line.SetTransparencyNum(5);
    line.SetContentStr("camera \xE6\x8A\xA5");
    line.SetPosXType(6);
    line.SetPosX(7);
    line.SetPosYType(8);
    line.SetPosY(9);
    line.SetBeginMilliSecond(10);
    line.SetEndMilliSecond(11);
    return line;
}

void ExpectFullLine(const InfoOverlayLineArray& line)
{
    EXPECT_EQ(line.GetFontSize(), 1);
    EXPECT_EQ(line.GetColorRGB(), (std::array<int, 3>{2, 3, 4}));
    EXPECT_EQ(line.GetTransparencyNum(), 5);
    EXPECT_EQ(line.GetContentStr(), "camera \xE6\x8A\xA5");
    EXPECT_EQ(line.GetPosXType(), 6);
    EXPECT_EQ(line.GetPosX(), 7);
    EXPECT_EQ(line.GetPosYType(), 8);
    EXPECT_EQ(line.GetPosY(), 9);
    EXPECT_EQ(line.GetBeginMilliSecond(), 10);
    EXPECT_EQ(line.GetEndMilliSecond(), 11);
}

}  // namespace

TEST(OverlayLine, IsZeroAndEmptyAtFirst)
{
    const InfoOverlayLineArray line;
    EXPECT_EQ(line.GetFontSize(), 0);
    EXPECT_EQ(line.GetColorRGB(), (std::array<int, 3>{0, 0, 0}));
    EXPECT_EQ(line.GetTransparencyNum(), 0);
    EXPECT_EQ(line.GetContentStr(), "");
    EXPECT_EQ(line.GetPosXType(), 0);
    EXPECT_EQ(line.GetPosX(), 0);
    EXPECT_EQ(line.GetPosYType(), 0);
    EXPECT_EQ(line.GetPosY(), 0);
    EXPECT_EQ(line.GetBeginMilliSecond(), 0);
    EXPECT_EQ(line.GetEndMilliSecond(), 0);
}

TEST(OverlayLine, KeepsEachValueThroughCopyAndMove)
{
    const InfoOverlayLineArray line = FullLine();
    ExpectFullLine(line);
    InfoOverlayLineArray copy(line);
    ExpectFullLine(copy);
    const InfoOverlayLineArray moved(std::move(copy));
    ExpectFullLine(moved);
    InfoOverlayLineArray assigned;
    assigned = moved;
    ExpectFullLine(assigned);
    InfoOverlayLineArray move_assigned;
    move_assigned = std::move(assigned);
    ExpectFullLine(move_assigned);
}

TEST(Overlay, IsNoneAtFirst)
{
    const InfoOverlay overlay;
    EXPECT_EQ(overlay.GetInfoOverlayType(), -1);
    EXPECT_TRUE(overlay.GetInfoOverlayLineArrayVec().empty());
}

TEST(Overlay, KeepsItsTypesAndLines)
{
    InfoOverlay overlay;
    overlay.SetInfoOverlayType(0);
    overlay.SetInfoOverlayLineArrayType(2);
    overlay.SetInfoOverlayLineArrayVec({FullLine(), InfoOverlayLineArray()});
    EXPECT_EQ(overlay.GetInfoOverlayType(), 0);
    EXPECT_EQ(overlay.GetInfoOverlayLineArrayType(), 2);
    const std::vector<InfoOverlayLineArray> lines = overlay.GetInfoOverlayLineArrayVec();
    ASSERT_EQ(lines.size(), 2u);
    ExpectFullLine(lines[0]);
    EXPECT_EQ(lines[1].GetContentStr(), "");
}
