#pragma once

#include "FetchyardLogicalHost/EngineHost.h"

#include <QString>

#include <string>
#include <vector>

namespace FetchyardClient {

// What a person wants to tell apart in the list.
enum class RowState : int {
    Waiting,
    Running,
    Finished,
    Failed,
    Stopped,
    Interrupted,  // an earlier run of the client left it unfinished
    Deleted,
};
inline constexpr int kRowStates = 7;

// One line of the list: a task as it was at the last look, and what was measured of it.
struct TaskRow
{
    FetchyardLogical::TaskView task;
    unsigned long long bytes = 0;  // on disk
    unsigned long pictures = 0;    // picture files in the export's folder
    double rate = 0;               // bytes a second, of a running task
    bool is_measured = false;
};

// News of a task: how it is now, or that it is not in the list any more.
struct TaskNews
{
    TaskRow row;
    std::string in_place_of;  // guid of the entry whose place it takes; empty for its own
    bool is_gone = false;
};

RowState StateOf(const FetchyardLogical::TaskView& task);
// A task that is in the queue or runs: it can be stopped, and not removed.
bool IsBusy(const FetchyardLogical::TaskView& task);
// Milliseconds since 1970 for the column of starts: of a waiting task those of its hand-over.
long long StartOf(const FetchyardLogical::TaskView& task);

// Texts of the list in the person's language. A name of thousands of letters is cut for the list.
QString NameText(const FetchyardLogical::TaskView& task);
QString KindText(const FetchyardLogical::TaskView& task);
QString StateText(RowState state);
QString StateText(const FetchyardLogical::TaskView& task);
// "12 pages, 30 pictures, 4.5 MiB, 1.2 MiB/s, 00:12"; now in milliseconds since 1970.
QString ProgressText(const TaskRow& row, long long now);
// The local time, short; with seconds for a tool tip.
QString StartText(const FetchyardLogical::TaskView& task, bool is_long);
// One line.
QString ErrorText(const FetchyardLogical::TaskView& task);
// A file that failed, and why: one line of the next.
QString FailureText(const std::string& file, const std::string& reason);
// What goes to the clipboard: name, state, error text and codes, failed files; a line each.
QString ErrorReport(const FetchyardLogical::TaskView& task);

// The text, cut behind so many letters; never inside a surrogate pair.
QString CutText(const QString& text, int letters);

}  // namespace FetchyardClient
