#include "FetchyardLogical/ConfigMananger.h"
#include "tests/unit/TempFolder.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

using namespace FetchyardLogical;

namespace {

// The client's data folder is the test's own.
class ConfigManangerTest : public ::testing::Test
{
protected:
    ConfigManangerTest()
    {
        ZellClientHost::ClientSettings settings;
        settings.data_path = settings.public_data_path = folder_.File("data/");
        ZellClientHost::SetClientSettings(settings);
    }

    static CConfigMananger& Mananger() { return CConfigMananger::Instance(); }
    std::string File() const { return folder_.File("data/fetchyard.json"); }

    std::string Content() const
    {
        std::ifstream file(File(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    void Put(const std::string& text) const
    {
        std::filesystem::create_directories(folder_.File("data"));
        std::ofstream(File(), std::ios::binary) << text;
    }

    static bool Update(const std::string& path)
    {
        ConfigurationInfo info{path};
        return Mananger().UpdateConfiguration(info, SavePathConfiguration);
    }

    TempFolder folder_;
};

}  // namespace

TEST_F(ConfigManangerTest, NothingStoredLeavesTheArgumentAsItWas)
{
    ConfigurationInfo info{"before"};
    EXPECT_FALSE(Mananger().GetConfigurationInfo(info));
    EXPECT_EQ(info.save_path, "before");
}

TEST_F(ConfigManangerTest, WhatWasStoredComesBack)
{
    ASSERT_TRUE(Update("D:\\exports \"new\"/摄像头/"));
    ConfigurationInfo info;
    ASSERT_TRUE(Mananger().GetConfigurationInfo(info));
    EXPECT_EQ(info.save_path, "D:\\exports \"new\"/摄像头/");
    ASSERT_TRUE(Update("/second/"));
    ASSERT_TRUE(Mananger().GetConfigurationInfo(info));
    EXPECT_EQ(info.save_path, "/second/");
}

TEST_F(ConfigManangerTest, AFileThatIsNoConfigurationCountsAsNothingStored)
{
    for (const char* text : {"", "garbage", "{", "{}", "[]", R"({"SavePath":7})", R"({"SavePath":""})"}) {
        Put(text);
        ConfigurationInfo info{"before"};
        EXPECT_FALSE(Mananger().GetConfigurationInfo(info)) << text;
        EXPECT_EQ(info.save_path, "before") << text;
        EXPECT_TRUE(Update("/new/")) << text;
        EXPECT_TRUE(Mananger().GetConfigurationInfo(info)) << text;
        EXPECT_EQ(info.save_path, "/new/") << text;
    }
}

TEST_F(ConfigManangerTest, MembersOfOthersStay)
{
    Put(R"({"Other":[1,2],"SavePath":"/old/"})");
    ASSERT_TRUE(Update("/new/"));
    EXPECT_EQ(Content(), R"({"Other":[1,2],"SavePath":"/new/"})");
}

TEST_F(ConfigManangerTest, AnUnknownTypeChangesNothing)
{
    ASSERT_TRUE(Update("/old/"));
    ConfigurationInfo info{"/new/"};
    EXPECT_FALSE(Mananger().UpdateConfiguration(info, static_cast<ConfigurationType>(1)));
    ASSERT_TRUE(Mananger().GetConfigurationInfo(info));
    EXPECT_EQ(info.save_path, "/old/");
}

TEST_F(ConfigManangerTest, AFailedWriteLeavesNoFile)
{
    std::ofstream(folder_.File("data")) << "in the way";
    EXPECT_FALSE(Update("/new/"));
    EXPECT_TRUE(std::filesystem::is_regular_file(folder_.File("data")));
}

TEST_F(ConfigManangerTest, AReaderNeverSeesHalfAFile)
{
    ASSERT_TRUE(Update(std::string(20000, 'a')));
    std::vector<std::thread> writers;
    for (const char letter : {'a', 'b'})
        writers.emplace_back([letter] {
            for (int i = 0; i < 30; ++i)
                EXPECT_TRUE(Update(std::string(20000, letter)));
        });
    for (int i = 0; i < 30; ++i) {
        ConfigurationInfo info;
        ASSERT_TRUE(Mananger().GetConfigurationInfo(info));
        ASSERT_EQ(info.save_path.size(), 20000u);
        EXPECT_EQ(std::count(info.save_path.begin(), info.save_path.end(), info.save_path[0]), 20000);
    }
    for (std::thread& writer : writers)
        writer.join();
    const auto files = std::filesystem::directory_iterator(folder_.File("data"));
    EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}
