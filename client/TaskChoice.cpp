#include "TaskChoice.h"

#include <algorithm>
#include <cstdio>

namespace FetchyardClient {

using FetchyardLogical::TaskView;

namespace {

constexpr std::size_t kMostDigits = 9;

const TaskView* TaskOf(const std::vector<TaskView>& tasks, const std::string& word)
{
    const bool is_number = !word.empty() && word.size() <= kMostDigits &&
                           word.find_first_not_of("0123456789") == std::string::npos;
    if (is_number) {
        const std::size_t number = std::stoul(word);
        return number >= 1 && number <= tasks.size() ? &tasks[number - 1] : nullptr;
    }
    const auto found =
        std::find_if(tasks.begin(), tasks.end(), [&](const TaskView& task) { return task.guid == word; });
    return found == tasks.end() ? nullptr : &*found;
}

}  // namespace

bool ChooseTasks(const std::vector<TaskView>& tasks, const std::vector<std::string>& words,
                 std::vector<TaskView>& chosen)
{
    bool all_there = true;
    for (const std::string& word : words) {
        const TaskView* const task = TaskOf(tasks, word);
        if (task == nullptr) {
            std::fprintf(stderr, "there is no task %s; fetchyard tasks lists them\n", word.c_str());
            all_there = false;
            continue;
        }
        const bool is_new = std::none_of(chosen.begin(), chosen.end(),
                                         [&](const TaskView& known) { return known.guid == task->guid; });
        if (is_new)
            chosen.push_back(*task);
    }
    return all_there;
}

}  // namespace FetchyardClient
