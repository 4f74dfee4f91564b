#include "MultimediaComm/InfoOverlay.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

using Zell::MultimediaComm::CWaterMarkParam;
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

TEST(WaterMarkParam, IsOffAtFirst)
{
    const CWaterMarkParam watermark;
    EXPECT_FALSE(watermark.GetVal_b_enable());
    EXPECT_FALSE(watermark.GetVal_b_auto_adapt());
    EXPECT_TRUE(watermark.GetVal_water_mark_contents().empty());
    EXPECT_EQ(watermark.GetVal_r(), 255);
    EXPECT_EQ(watermark.GetVal_bench_width(), 1920);
    EXPECT_EQ(watermark.GetVal_bench_height(), 1080);
}

TEST(WaterMarkParam, KeepsEachValueThroughCopyAndMove)
{
    CWaterMarkParam watermark;
    watermark.SetVal_b_enable(true);
    watermark.SetVal_b_auto_adapt(true);
    watermark.SetVal_water_mark_contents({"operator", "2026"});
    watermark.SetVal_r(1);
    watermark.SetVal_g(2);
    watermark.SetVal_b(3);
    watermark.SetVal_font_size(4);
    watermark.SetVal_transparency(5);
    watermark.SetVal_rotation_angle(6);
    watermark.SetVal_space(7);
    watermark.SetVal_bench_width(8);
    watermark.SetVal_bench_height(9);
    const CWaterMarkParam copy(watermark);
    CWaterMarkParam moved;
    moved = std::move(watermark);
    for (const CWaterMarkParam* one : {&copy, static_cast<const CWaterMarkParam*>(&moved)}) {
        EXPECT_TRUE(one->GetVal_b_enable());
        EXPECT_TRUE(one->GetVal_b_auto_adapt());
        EXPECT_EQ(one->GetVal_water_mark_contents(), (std::vector<std::string>{"operator", "2026"}));
        EXPECT_EQ(one->GetVal_r(), 1);
        EXPECT_EQ(one->GetVal_g(), 2);
        EXPECT_EQ(one->GetVal_b(), 3);
        EXPECT_EQ(one->GetVal_font_size(), 4);
        EXPECT_EQ(one->GetVal_transparency(), 5);
        EXPECT_EQ(one->GetVal_rotation_angle(), 6);
        EXPECT_EQ(one->GetVal_space(), 7);
        EXPECT_EQ(one->GetVal_bench_width(), 8);
        EXPECT_EQ(one->GetVal_bench_height(), 9);
    }
}

TEST(Overlay, CanStampWithTheMachinesLibraries)
{
    EXPECT_TRUE(InfoOverlay().IsHandleAvailable());
}
