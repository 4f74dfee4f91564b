#include "FetchyardBussiness/Platform/HtmlTool.h"
#include "tests/unit/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

using FetchyardBussiness::Platform::RunHtmlTool;

// A tool of the test's own stands first on the path and tells what it was started with.
class HtmlTool : public testing::Test
{
protected:
    HtmlTool() : path_(std::getenv("PATH")) { ::setenv("PATH", (folder_.Text() + ":" + path_).c_str(), 1); }
    ~HtmlTool() override { ::setenv("PATH", path_.c_str(), 1); }

    void Install(const std::string& script) const
    {
        const std::string tool = folder_.File("wkhtmltopdf");
        std::ofstream(tool) << "#!/bin/sh\n" << script << "\n";
        std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    }

    std::string Told() const
    {
        std::ifstream file(folder_.File("told"));
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string Into() const { return " > " + folder_.File("told"); }

    TempFolder folder_;
    const std::string path_;
};

TEST_F(HtmlTool, EveryWordOfTheLineIsAnArgument)
{
    Install("printf '[%s]' \"$@\"" + Into());
    EXPECT_TRUE(RunHtmlTool(" --encoding utf-8  -O landscape --page-size A4 /in \"$HOME/o'ut;x\""));
    EXPECT_EQ(Told(), "[--encoding][utf-8][-O][landscape][--page-size][A4][/in][\"$HOME/o'ut;x\"]");
}

TEST_F(HtmlTool, NeedsNoDisplay)
{
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    Install("printf '%s' \"$QT_QPA_PLATFORM\"" + Into());
    EXPECT_TRUE(RunHtmlTool(" x"));
    EXPECT_EQ(Told(), "offscreen");
    EXPECT_STREQ(std::getenv("QT_QPA_PLATFORM"), "xcb");
}

TEST_F(HtmlTool, IsAGroupOfItsOwnWithTheNullDeviceAndNothingElse)
{
    const std::string of_this_process = folder_.File("of-this-process");
    Install(
        "{ cut -d' ' -f5 /proc/$$/stat; echo $$; readlink /proc/$$/fd/0; "
        "ls -l /proc/$$/fd | grep -c of-this-process; }" +
        Into());
    std::FILE* inherited = std::fopen(of_this_process.c_str(), "w");
    EXPECT_TRUE(RunHtmlTool(" x"));
    std::fclose(inherited);
    std::ifstream told(folder_.File("told"));
    std::string group;
    std::string process;
    std::string input;
    std::string descriptors;
    told >> group >> process >> input >> descriptors;
    EXPECT_EQ(group, process);
    EXPECT_EQ(input, "/dev/null");
    EXPECT_EQ(descriptors, "0");
}

TEST_F(HtmlTool, ExitCodeIsNotLookedAt)
{
    Install("exit 1");
    EXPECT_TRUE(RunHtmlTool(" x"));
}

TEST_F(HtmlTool, MissingToolIsTold)
{
    ::setenv("PATH", folder_.Text().c_str(), 1);
    EXPECT_FALSE(RunHtmlTool(" x"));
}

}  // namespace
