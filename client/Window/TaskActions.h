#pragma once

#include "Window/TaskRow.h"

#include <string>
#include <vector>

// What a person does to tasks of the list. Every call may take its time and belongs on a thread of its own;
// none needs a window.
namespace FetchyardClient {

enum class TaskAction { Stop, StartAgain, Delete, Remove };

struct ActionOutcome
{
    std::size_t done = 0;
    std::vector<QString> refused;  // a name and a reason each
    std::vector<TaskNews> news;    // how the tasks are now
};

// Whether the action makes sense for a task as it is now; it may be refused all the same.
bool IsPossible(TaskAction action, const FetchyardLogical::TaskView& task);
// One that an earlier run left unfinished and that has a record to go on from.
bool CanGoOn(const FetchyardLogical::TaskView& task);

// Does it to each. Stop and Delete ask the task, which takes its time; Delete takes the folder of an
// unfinished export along. StartAgain makes one of an earlier run anew from its record.
ActionOutcome Act(TaskAction action, const std::vector<std::string>& guids);

// The folder of a task. Empty with the reason if there is none any more.
QString FolderToOpen(const FetchyardLogical::TaskView& task, QString& reason);
// The report, the archive or the one file that a task left. Empty with the reason if there is none.
QString ReportToOpen(const FetchyardLogical::TaskView& task, QString& reason);

}  // namespace FetchyardClient
