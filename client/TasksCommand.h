#pragma once

#include "LibraryHost.h"

#include <string>
#include <vector>

namespace FetchyardClient {

// Prints the tasks of all runs on the data folder, as a table or as JSON. Another client may be at work
// there.
int TasksCommand(const HostOptions& options, bool as_json);

// Takes tasks off the list, those that are named or all that ended well or were deleted. Files stay. A task
// that can't be found is said, and then nothing is removed.
int RemoveCommand(const HostOptions& options, const std::vector<std::string>& words, bool finished);

}  // namespace FetchyardClient
