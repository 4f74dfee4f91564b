#include "tests/unit/TempFolder.h"
#include "ZellBase/Util.h"

#include <gmock/gmock.h>

#include <fstream>
#include <string>
#include <vector>

namespace {

bool Leaves(const std::string& way, const std::string& log)
{
    const std::string line = std::string("\"") + LEAVING_PROGRAM + "\" " + way + " \"" + log + "\"";
    return Zell::Base::ProcessUtil::LaunchApp(line, true, true, nullptr);
}

std::vector<std::string> Lines(const std::string& path)
{
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

}  // namespace

TEST(ProcessExit, StopsAWorkerAtItsNextLogLine)
{
    const TempFolder folder;
    EXPECT_TRUE(Leaves("logging", folder.File("log")));
}

TEST(ProcessExit, LeavesABlockedWorkerWhereItIs)
{
    const TempFolder folder;
    EXPECT_TRUE(Leaves("blocked", folder.File("log")));
}

TEST(ProcessExit, StopsAWorkerAtTheEndOfItsWait)
{
    const TempFolder folder;
    EXPECT_TRUE(Leaves("turns", folder.File("log")));
}

TEST(ProcessExit, DoesNotHangOnAWorkerThatNeverParks)
{
    const TempFolder folder;
    EXPECT_TRUE(Leaves("busy", folder.File("log")));
}

TEST(ProcessExit, MayBeginOnAWorker)
{
    const TempFolder folder;
    EXPECT_TRUE(Leaves("worker", folder.File("log")));
    const auto lines = Lines(folder.File("log"));
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_THAT(lines[0], ::testing::EndsWith("the last line"));
}

TEST(ProcessExit, StopsTheNotificationLoopAndItsWaitingTasks)
{
    const TempFolder folder;
    EXPECT_TRUE(Leaves("loop", folder.File("log")));
}

TEST(ProcessExit, DoesNotHangOnAnObserverInTheMiddleOfACall)
{
    const TempFolder folder;
    for (const char* way : {"observer that logs", "observer that waits", "observer that exits"})
        EXPECT_TRUE(Leaves(std::string("\"") + way + "\"", folder.File("log"))) << way;
}

TEST(ProcessExit, LosesNoLine)
{
    const TempFolder folder;
    EXPECT_TRUE(Leaves("lines", folder.File("log")));
    const auto lines = Lines(folder.File("log"));
    ASSERT_EQ(lines.size(), 5000u);
    EXPECT_THAT(lines.back(), ::testing::EndsWith("line 4999"));
}
