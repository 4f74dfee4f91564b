#pragma once

#include "FetchyardLogicalHost/EngineHost.h"

#include <string>
#include <vector>

namespace FetchyardClient {

// Finds tasks of the list by what a person calls them: the number that `fetchyard tasks` shows, counted from
// 1, or the guid. False, with what is wrong printed, if a word names none; a task that is named twice is
// chosen once.
bool ChooseTasks(const std::vector<FetchyardLogical::TaskView>& tasks, const std::vector<std::string>& words,
                 std::vector<FetchyardLogical::TaskView>& chosen);

}  // namespace FetchyardClient
