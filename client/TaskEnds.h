#pragma once

#include "ExpectedFiles.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "ProgressView.h"
#include "Trouble.h"

#include <functional>
#include <string>
#include <vector>

namespace FetchyardClient {

// From now on Ctrl-C is counted; a second one leaves the process at once.
void CatchInterrupts();
bool IsInterrupted();

// Shows the tasks, and what the libraries complain of, until nothing waits or runs. Behind the first Ctrl-C
// it asks for the tasks' ends, once.
void WatchUntilIdle(const std::vector<std::string>& guids, const std::function<void()>& ask_for_ends,
                    ProgressView& view, Trouble& trouble);

// Prints what became of a task, and of the files that it was to leave. False unless it ended well and each of
// them is there and opens.
bool TellEnd(const FetchyardLogical::TaskView& task, const std::vector<ExpectedFile>& files,
             const std::string& log_file);

}  // namespace FetchyardClient
