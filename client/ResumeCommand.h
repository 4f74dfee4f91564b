#pragma once

#include "LibraryHost.h"

#include <string>
#include <vector>

namespace FetchyardClient {

// Brings tasks of earlier runs back from their records, each in its place of the list, says what the records
// could not carry, and watches them to their ends as a run does. words names them, by number or guid; all
// takes those that were interrupted or stopped. A task that is named and can't be gone on with at all, since
// it has ended well, is refused before anything begins.
int ResumeTasks(const HostOptions& options, const std::vector<std::string>& words, bool all);

}  // namespace FetchyardClient
