#include "FetchyardBussiness/Platform/HtmlTool.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <QByteArray>
#include <QTemporaryDir>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <string>

namespace {

using FetchyardBussiness::Platform::RunHtmlTool;

// A tool of the test's own, first on the search path, that tells how it was started.
class HtmlToolTest : public testing::Test
{
protected:
    HtmlToolTest() { Use("PATH", folder_.path().toLocal8Bit() + ":" + path_); }

    ~HtmlToolTest() override
    {
        qputenv("PATH", path_);
        if (platform_.isNull())
            qunsetenv("QT_QPA_PLATFORM");
        else
            qputenv("QT_QPA_PLATFORM", platform_);
    }

    static void Use(const char* name, const QByteArray& value) { qputenv(name, value); }

    std::string Path(const std::string& name) const { return folder_.path().toStdString() + "/" + name; }

    // The tool writes what the commands print into the file "told".
    void MakeTool(const std::string& commands) const
    {
        const std::string file = Path("wkhtmltopdf");
        std::ofstream(file) << "#!/bin/bash\n{\n" << commands << "\n} > '" << Path("told") << "'\n";
        ASSERT_EQ(::chmod(file.c_str(), 0700), 0);
    }

    std::string Told() const
    {
        std::ifstream file(Path("told"));
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // What the tool is given for a line, one argument in brackets a line.
    std::string ArgumentsOf(const std::string& line) const
    {
        MakeTool(R"(for word in "$@"; do echo "[$word]"; done)");
        EXPECT_TRUE(RunHtmlTool(line));
        return Told();
    }

    QTemporaryDir folder_;
    const QByteArray path_ = qgetenv("PATH");
    const QByteArray platform_ = qgetenv("QT_QPA_PLATFORM");
};

TEST_F(HtmlToolTest, EveryWordOfTheLineIsAnArgument)
{
    EXPECT_EQ(ArgumentsOf(" --encoding utf-8  -O landscape --page-size A4 /a.html /b.pdf"),
              "[--encoding]\n[utf-8]\n[-O]\n[landscape]\n[--page-size]\n[A4]\n[/a.html]\n[/b.pdf]\n");
    EXPECT_EQ(ArgumentsOf(""), "");
    EXPECT_EQ(ArgumentsOf(" \t "), "");
}

TEST_F(HtmlToolTest, QuotesAndBackslashesMeanWhatTheyMeanOnWindows)
{
    EXPECT_EQ(ArgumentsOf(R"(a\b\\c "two words" mid"dle of"word)"),
              "[a\\b\\\\c]\n[two words]\n[middle ofword]\n");
    EXPECT_EQ(ArgumentsOf(R"(\" \\" x" \\\"y)"), "[\"]\n[\\ x]\n[\\\"y]\n");
    EXPECT_EQ(ArgumentsOf(R"("a""b" "" "open end)"), "[a\"b]\n[]\n[open end]\n");
    EXPECT_EQ(ArgumentsOf(R"($HOME `id` 'a b' ; * 门)"), "[$HOME]\n[`id`]\n['a]\n[b']\n[;]\n[*]\n[门]\n");
}

TEST_F(HtmlToolTest, MissingToolDoesNotStart)
{
    Use("PATH", folder_.path().toLocal8Bit());
    EXPECT_FALSE(RunHtmlTool(" a b"));
}

TEST_F(HtmlToolTest, ToolThatFailsHasStarted)
{
    MakeTool("echo here; exit 3");
    EXPECT_TRUE(RunHtmlTool(""));
    EXPECT_EQ(Told(), "here\n");
}

TEST_F(HtmlToolTest, ToolThatIsKilledHasStarted)
{
    MakeTool("kill -9 $$");
    EXPECT_TRUE(RunHtmlTool(""));
}

TEST_F(HtmlToolTest, StandardStreamsAreTheNullDevice)
{
    MakeTool("readlink /proc/$$/fd/0 /proc/$$/fd/2; cat");
    EXPECT_TRUE(RunHtmlTool(""));
    EXPECT_EQ(Told(), "/dev/null\n/dev/null\n");
}

TEST_F(HtmlToolTest, NoOtherDescriptorIsInherited)
{
    // One that was opened without the flag that closes it.
    const int open_file = ::open("/dev/zero", O_RDONLY);
    ASSERT_GT(open_file, 2);
    MakeTool("readlink /proc/$$/fd/*");
    EXPECT_TRUE(RunHtmlTool(""));
    ::close(open_file);
    EXPECT_EQ(Told().find("/dev/zero"), std::string::npos) << Told();
}

TEST_F(HtmlToolTest, ToolHasAGroupOfItsOwn)
{
    MakeTool("cut -d ' ' -f 1,5 /proc/$$/stat");
    EXPECT_TRUE(RunHtmlTool(""));
    std::string process;
    std::string group;
    std::ifstream(Path("told")) >> process >> group;
    EXPECT_FALSE(process.empty());
    EXPECT_EQ(process, group);
}

TEST_F(HtmlToolTest, ToolRunsAtTheLowestPriority)
{
    // The priority follows the start; a tool that never got it says so in the end.
    MakeTool(
        "for turn in {1..20000}; do read -r line < /proc/$$/stat; set -- ${line##*) }; "
        "[ ${17} = 19 ] && break; done; echo ${17}");
    EXPECT_TRUE(RunHtmlTool(""));
    EXPECT_EQ(Told(), "19\n");
}

TEST_F(HtmlToolTest, ToolNeedsNoDisplay)
{
    MakeTool("echo $QT_QPA_PLATFORM");
    for (const char* platform : {"offscreen", "xcb"}) {
        Use("QT_QPA_PLATFORM", platform);
        EXPECT_TRUE(RunHtmlTool(""));
        EXPECT_EQ(Told(), "offscreen\n") << platform;
    }
    qunsetenv("QT_QPA_PLATFORM");
    EXPECT_TRUE(RunHtmlTool(""));
    EXPECT_EQ(Told(), "offscreen\n");
}

TEST_F(HtmlToolTest, SignalThatTheClientIgnoresIsNotIgnoredByTheTool)
{
    MakeTool("sed -n 's/^SigIgn:\\t//p' /proc/$$/status");
    const auto usual = std::signal(SIGPIPE, SIG_IGN);
    const bool has_run = RunHtmlTool("");
    std::signal(SIGPIPE, usual);
    ASSERT_TRUE(has_run);
    ASSERT_FALSE(Told().empty());
    EXPECT_EQ(std::stoull(Told(), nullptr, 16) & (1ULL << (SIGPIPE - 1)), 0u) << Told();
}

}  // namespace
