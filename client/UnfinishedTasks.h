#pragma once

#include "FetchyardLogicalHost/EngineHost.h"
#include "LibraryHost.h"

#include <string>
#include <vector>

namespace FetchyardClient {

// Whether a task never told an end, or was stopped: what was asked for is still wanted.
bool IsUnfinished(const FetchyardLogical::TaskView& task);
// Whether there is a record from which a task can be made anew. Single downloads have none.
bool HasRecord(const FetchyardLogical::TaskView& task);

// The command that brings tasks back, or all that are unfinished if none is named, with the options that lead
// to the same data and stations as those of this run.
std::string ResumeCommand(const HostOptions& options, const std::vector<std::string>& guids);

// Prints a line if earlier runs left unfinished tasks, with the command that brings them back.
void TellEarlierTasks(const HostOptions& options);
// Prints how to go on with those of these tasks that were stopped.
void TellHowToGoOn(const HostOptions& options, const std::vector<std::string>& guids);

}  // namespace FetchyardClient
