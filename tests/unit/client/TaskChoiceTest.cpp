#include "TaskChoice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace FetchyardClient;
using FetchyardLogical::TaskView;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<TaskView> Tasks()
{
    std::vector<TaskView> tasks(3);
    tasks[0].guid = "guid-a";
    tasks[1].guid = "guid-b";
    tasks[2].guid = "12";
    return tasks;
}

// Guids of what is chosen; "?" first if a word names no task.
std::vector<std::string> Chosen(const std::vector<std::string>& words)
{
    std::vector<TaskView> chosen;
    std::vector<std::string> guids;
    testing::internal::CaptureStderr();
    if (!ChooseTasks(Tasks(), words, chosen))
        guids.emplace_back("?");
    testing::internal::GetCapturedStderr();
    for (const TaskView& task : chosen)
        guids.push_back(task.guid);
    return guids;
}

}  // namespace

TEST(TaskChoice, NumbersCountFromOne)
{
    EXPECT_THAT(Chosen({"1", "3"}), ElementsAre("guid-a", "12"));
}

TEST(TaskChoice, GuidNamesItsTask)
{
    EXPECT_THAT(Chosen({"guid-b"}), ElementsAre("guid-b"));
}

TEST(TaskChoice, TaskThatIsNamedTwiceIsChosenOnce)
{
    EXPECT_THAT(Chosen({"guid-a", "1", "1"}), ElementsAre("guid-a"));
}

TEST(TaskChoice, WordThatNamesNoTaskIsRefused)
{
    for (const char* const word :
         {"0", "4", "12", "999999999", "99999999999999999999", "-1", "1x", "", "guid"})
        EXPECT_THAT(Chosen({word}), ElementsAre("?")) << word;
}

TEST(TaskChoice, NoWordChoosesNothing)
{
    EXPECT_THAT(Chosen({}), IsEmpty());
}
