#include "tests/unit/TempFolder.h"
#include "tests/unit/ZellBase/Pattern.h"
#include "ZellBase/Log.h"
#include "ZellBaseHost/LogHost.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

using ::testing::HasSubstr;
using Zell::Base::details::FlushLog;
using Zell::Base::details::IOXTFormatLog;
using Zell::Base::details::SetLogFile;

namespace {

class Log : public ::testing::Test
{
protected:
    void TearDown() override
    {
        Zell::Base::details::SetLogListener({});
        SetLogFile("", 5);
    }

    bool Open(int level) { return SetLogFile(path_, level); }

    std::vector<std::string> Lines() const
    {
        FlushLog();
        std::ifstream file(path_);
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);)
            lines.push_back(line);
        return lines;
    }

    const TempFolder folder_;
    const std::string path_ = folder_.File("logs/client.log");
};

}  // namespace

TEST_F(Log, LineHasTimeLevelModuleAndText)
{
    ASSERT_TRUE(Open(3));
    IOXTFormatLog(3, "FetchyardBussiness", "[%s]page %d[%s(%d)]", "A::Exec", 7, "a.cpp", 12);
    IOXTFormatLog(4, "FetchyardBussiness", "[%s]stopped[%s(%d)]", "A::Exec", "a.cpp", 13);
    IOXTFormatLog(5, "FetchyardBussiness", "[%s]failed[%s(%d)]", "A::Exec", "a.cpp", 14);
    const auto lines = Lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_THAT(lines[0], FitsPattern("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} I "
                                      "FetchyardBussiness \\[A::Exec\\]page 7\\[a\\.cpp\\(12\\)\\]"));
    EXPECT_THAT(lines[1], HasSubstr(" W FetchyardBussiness [A::Exec]stopped"));
    EXPECT_THAT(lines[2], HasSubstr(" E FetchyardBussiness [A::Exec]failed"));
}

TEST_F(Log, DropsLinesBelowTheLevel)
{
    ASSERT_TRUE(Open(4));
    IOXTFormatLog(3, "m", "information");
    IOXTFormatLog(4, "m", "warning");
    IOXTFormatLog(5, "m", "error");
    const auto lines = Lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_THAT(lines[0], HasSubstr("warning"));
    EXPECT_THAT(lines[1], HasSubstr("error"));
}

TEST_F(Log, GoesNowhereWithAnEmptyPath)
{
    ASSERT_TRUE(Open(3));
    IOXTFormatLog(3, "m", "before");
    ASSERT_TRUE(SetLogFile("", 3));
    IOXTFormatLog(5, "m", "behind");
    EXPECT_EQ(Lines().size(), 1u);
}

TEST_F(Log, StaysWhereItIsWhenTheFileCannotBeOpened)
{
    ASSERT_TRUE(Open(3));
    std::ofstream(folder_.File("file")) << "x";
    EXPECT_FALSE(SetLogFile(folder_.File("file/client.log"), 3));
    IOXTFormatLog(3, "m", "still here");
    EXPECT_EQ(Lines().size(), 1u);
}

TEST_F(Log, AppendsToAFileThatIsThere)
{
    ASSERT_TRUE(Open(3));
    IOXTFormatLog(3, "m", "one");
    ASSERT_TRUE(Open(3));
    IOXTFormatLog(3, "m", "two");
    EXPECT_EQ(Lines().size(), 2u);
}

TEST_F(Log, ShowsANullText)
{
    ASSERT_TRUE(Open(3));
    const char* volatile nothing = nullptr;
    IOXTFormatLog(3, "m", "<%s>", nothing);
    IOXTFormatLog(3, nullptr, "no module");
    const auto lines = Lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_THAT(lines[0], HasSubstr("<(null)>"));
}

TEST_F(Log, KeepsATextOnOneLine)
{
    ASSERT_TRUE(Open(3));
    IOXTFormatLog(3, "m", "%s", "{\r\n\"a\":1\n}\n");
    const auto lines = Lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_THAT(lines[0], HasSubstr(R"({\r\n"a":1\n}\n)"));
}

TEST_F(Log, KeepsATextOfAFewKilobytesWhole)
{
    ASSERT_TRUE(Open(3));
    const std::string text = std::string(5000, 'a') + "end";
    IOXTFormatLog(3, "m", "%s.", text.c_str());
    const auto lines = Lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_THAT(lines[0], HasSubstr("aend."));
}

TEST_F(Log, CutsAVeryLongTextBetweenTwoLetters)
{
    ASSERT_TRUE(Open(3));
    std::string text = "x";
    for (int i = 0; i < 5 * 1024 * 1024; ++i)
        text += "\xC3\xBC";
    IOXTFormatLog(3, "m", "%s", text.c_str());
    const auto lines = Lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_LT(lines[0].size(), 66u * 1024);
    EXPECT_GT(lines[0].size(), 60u * 1024);
    EXPECT_THAT(lines[0].substr(lines[0].size() - 5), "\xC3\xBC...");
}

TEST_F(Log, KeepsThreeOldFilesOfTenMegabytes)
{
    ASSERT_TRUE(Open(3));
    const std::string text(60 * 1024, 'x');
    for (int i = 0; i < 800; ++i) {
        IOXTFormatLog(3, "m", "%s", text.c_str());
        if (i % 100 == 0)
            FlushLog();
    }
    FlushLog();
    for (const char* name : {"client.log", "client.1.log", "client.2.log", "client.3.log"})
        EXPECT_LE(std::filesystem::file_size(folder_.File(std::string("logs/") + name)), 10u * 1024 * 1024)
            << name;
    EXPECT_FALSE(std::filesystem::exists(folder_.File("logs/client.4.log")));
}

TEST_F(Log, TakesLinesFromManyThreads)
{
    ASSERT_TRUE(Open(3));
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([i] {
            for (int n = 0; n < 1000; ++n)
                IOXTFormatLog(3, "m", "thread %d line %d", i, n);
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(Lines().size(), 4000u);
}

TEST_F(Log, TellsAListenerWhatTheFileGetsAndEachError)
{
    std::vector<std::string> heard;
    Zell::Base::details::SetLogListener(
        [&heard](int level, const std::string& module, const std::string& text) {
            heard.push_back(std::to_string(level) + " " + module + " " + text);
        });
    ASSERT_TRUE(Open(4));
    IOXTFormatLog(3, "m", "information");
    IOXTFormatLog(4, "m", "warning");
    ASSERT_TRUE(SetLogFile("", 4));
    IOXTFormatLog(4, "m", "warning unheard");
    IOXTFormatLog(5, "m", "error");
    Zell::Base::details::SetLogListener({});
    IOXTFormatLog(5, "m", "error unheard");
    EXPECT_THAT(heard, ::testing::ElementsAre("4 m warning", "5 m error"));
}
