#include "tests/unit/TempFolder.h"
#include "ZellAssetBook/SystermConfigManager.h"
#include "ZellAssetBookHost/WaterMarkFile.h"
#include "ZellBaseHost/LogHost.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using ZellAssetBook::COXTSystermConfigManager;
using ZellAssetBook::CWaterMark;

namespace {

// Every value as text, to compare at one look.
std::string All(const CWaterMark& watermark)
{
    int red = 0;
    int green = 0;
    int blue = 0;
    watermark.GetVal_color(red, green, blue);
    std::string text;
    for (const int value :
         {static_cast<int>(watermark.GetVal_b_enable()),
          static_cast<int>(watermark.GetVal_b_enable_autoadaptcolor()),
          static_cast<int>(watermark.GetVal_b_enable_username()),
          static_cast<int>(watermark.GetVal_b_enable_datatime()),
          static_cast<int>(watermark.GetVal_b_enable_custom_content()), red, green, blue,
          watermark.GetVal_font_size(), watermark.GetVal_transparency(), watermark.GetVal_rotation_angle(),
          watermark.GetVal_space(), watermark.GetVal_bench_width(), watermark.GetVal_bench_height()})
        text += std::to_string(value) + " ";
    return text + watermark.GetVal_custom_content();
}

constexpr char kDefaults[] = "1 0 1 1 0 255 255 255 30 70 20 200 1920 1080 ";

class WaterMarkFile : public testing::Test
{
protected:
    WaterMarkFile()
    {
        ZellClientHost::ClientSettings settings;
        settings.data_path = folder_.File("data");
        ZellClientHost::SetClientSettings(settings);
        std::filesystem::create_directories(folder_.File("data"));
        Zell::Base::details::SetLogListener(
            [lines = lines_](int, const std::string&, const std::string& text) { lines->push_back(text); });
    }
    ~WaterMarkFile() override { Zell::Base::details::SetLogListener({}); }

    void Write(const std::string& text)
    {
        std::ofstream(folder_.File("data/watermark.json"), std::ios::binary) << text;
    }
    static std::string Now() { return All(COXTSystermConfigManager::Instance().GetWaterMarkConfig()); }
    std::vector<std::string> LogLines()
    {
        Zell::Base::details::FlushLog();
        return *lines_;
    }
    std::string ReasonFor(const std::string& text)
    {
        Write(text);
        CWaterMark watermark;
        watermark.SetVal_font_size(99);
        std::string reason;
        EXPECT_FALSE(ZellAssetBook::LoadWaterMark(folder_.File("data/watermark.json"), watermark, reason))
            << text;
        EXPECT_EQ(All(watermark), kDefaults);
        return reason;
    }

    TempFolder folder_;
    std::shared_ptr<std::vector<std::string>> lines_ = std::make_shared<std::vector<std::string>>();
};

}  // namespace

TEST_F(WaterMarkFile, IsNotNeeded)
{
    EXPECT_EQ(Now(), kDefaults);
    EXPECT_THAT(LogLines(), IsEmpty());
}

TEST_F(WaterMarkFile, LiesInTheClientsDataFolder)
{
    EXPECT_EQ(ZellAssetBook::WaterMarkFilePath(), folder_.File("data/watermark.json"));
}

TEST_F(WaterMarkFile, SetsEachValue)
{
    Write(R"({"enable": false, "adapt_color": true, "user_name": false, "date_time": false, "custom": true,
              "custom_content": "\u4e2d \u0639", "color": "#0A1bFf", "font_size": 1, "transparency": 0,
              "rotation_angle": -360, "space": 0, "bench_width": 640, "bench_height": 480})");
    EXPECT_EQ(Now(), "0 1 0 0 1 10 27 255 1 0 -360 0 640 480 \xE4\xB8\xAD \xD8\xB9");
    EXPECT_THAT(LogLines(), IsEmpty());
}

TEST_F(WaterMarkFile, KeepsTheDefaultsOfWhatItLeavesOut)
{
    Write("\xEF\xBB\xBF{\"space\": 5}");
    EXPECT_EQ(Now(), "1 0 1 1 0 255 255 255 30 70 20 5 1920 1080 ");
}

TEST_F(WaterMarkFile, CountsAtOnceWhenItIsEdited)
{
    Write(R"({"font_size": 10})");
    EXPECT_THAT(Now(), HasSubstr(" 10 70 "));
    Write(R"({"font_size": 11})");
    EXPECT_THAT(Now(), HasSubstr(" 11 70 "));
    std::filesystem::remove(folder_.File("data/watermark.json"));
    EXPECT_EQ(Now(), kDefaults);
}

TEST_F(WaterMarkFile, DoesNotCountAtAllWhereItIsWrongAndTheLogSaysWhy)
{
    Write("{\n\"font_size\": 10,\n\"space\": 5,,\n}");
    EXPECT_EQ(Now(), kDefaults);
    EXPECT_THAT(LogLines(), ElementsAre(testing::AllOf(HasSubstr("watermark.json"), HasSubstr("line 3"))));
    EXPECT_THAT(ReasonFor(R"({"font_size": 10, "space": -1})"),
                HasSubstr("\"space\" must be a whole number from 0"));
}

TEST_F(WaterMarkFile, TellsWhatIsWrong)
{
    EXPECT_THAT(ReasonFor(""), HasSubstr("not JSON"));
    EXPECT_THAT(ReasonFor("[1]"), HasSubstr("must be a JSON object"));
    EXPECT_THAT(ReasonFor(R"({"colour": "#FFFFFF"})"), HasSubstr("unknown member \"colour\""));
    EXPECT_THAT(ReasonFor(R"({"enable": 1})"), HasSubstr("\"enable\" must be true or false"));
    EXPECT_THAT(ReasonFor(R"({"font_size": 1.5})"), HasSubstr("\"font_size\" must be a whole number"));
    EXPECT_THAT(ReasonFor(R"({"font_size": "12"})"), HasSubstr("\"font_size\" must be a whole number"));
    EXPECT_THAT(ReasonFor(R"({"font_size": 0})"), HasSubstr("from 1 to 1000"));
    EXPECT_THAT(ReasonFor(R"({"transparency": 101})"), HasSubstr("from 0 to 100"));
    EXPECT_THAT(ReasonFor(R"({"color": "#FFFFF"})"), HasSubstr("\"color\" must be like"));
    EXPECT_THAT(ReasonFor(R"({"color": "#-12345"})"), HasSubstr("\"color\" must be like"));
    EXPECT_THAT(ReasonFor(R"({"color": 5})"), HasSubstr("\"color\" must be like"));
    EXPECT_THAT(ReasonFor(R"({"custom_content": 5})"), HasSubstr("\"custom_content\" must be a text"));
    EXPECT_THAT(ReasonFor("{\"custom_content\": \"" + std::string(70'000, 'x') + "\"}"),
                HasSubstr("too large"));
}

TEST_F(WaterMarkFile, ComesBackAsItWasSaved)
{
    CWaterMark watermark;
    watermark.SetVal_b_enable(false);
    watermark.SetVal_color(1, 2, 3);
    watermark.SetVal_custom_content("\xE4\xB8\xAD \"quoted\"");
    watermark.SetVal_rotation_angle(-45);
    std::string reason;
    const std::string path = folder_.File("saved.json");
    ASSERT_TRUE(ZellAssetBook::SaveWaterMark(path, watermark, reason)) << reason;
    CWaterMark read;
    ASSERT_TRUE(ZellAssetBook::LoadWaterMark(path, read, reason)) << reason;
    EXPECT_EQ(All(read), All(watermark));
    EXPECT_FALSE(ZellAssetBook::SaveWaterMark(folder_.File("no/folder/x.json"), watermark, reason));
    EXPECT_THAT(reason, HasSubstr("no/folder/x.json"));
}

TEST_F(WaterMarkFile, ThatIsAFolderIsTold)
{
    std::filesystem::create_directory(folder_.File("data/watermark.json"));
    EXPECT_EQ(Now(), kDefaults);
    EXPECT_EQ(LogLines().size(), 1u);
}
