#pragma once

#include "FetchyardLogical/Export.h"
#include "ZellBase/Error.h"
#include "ZellTaskKit/DownloadTypes.h"

#include <chrono>
#include <map>
#include <string>
#include <vector>

// The engine, as the program that hosts it sees it. Any thread, but not from inside an observer's call: that
// comes from within a task's report. Tasks are known from their hand-over until the engine's Unit.
namespace FetchyardLogical {

// One task of the engine, at the moment of the call.
struct TaskView
{
    unsigned int number = 0;  // in the order of hand-over
    std::string guid;
    std::string name;
    std::string folder;
    ZellTaskKit::DownloadState state = ZellTaskKit::Unstarted;  // last report; Unstarted while it waits
    Zell::Base::Error::ErrorCode error;                         // that came with it
    std::string error_text;                                     // through the engine's text callback
    bool is_waiting = false;                                    // in the queue
    bool is_running = false;                                    // Exec has begun and not returned
    unsigned long pages = 0;                                    // report pages delivered in this run
    std::map<std::string, std::string> failed_files;  // of the last run that had any: name to reason
    // Of the last run that failed at its list call, as the server told it; see CmsGetPersonPicFileData.
    std::string remaining_login_count;
    std::string remaining_login_type;
};

FETCHYARDLOGICAL_API std::vector<TaskView> ListTasks();
// Asks a task to stop: one that waits is taken out of the queue and reported as stopped (6, or 12 for an
// evidence export); one whose thread has started but that has not reported its start is asked once it has.
// False if there is no such task or its Exec has returned; whether a running task heeds the request is the
// task's own affair.
FETCHYARDLOGICAL_API bool StopTask(const std::string& guid);
// Asks a task to delete what it has; see ZellTaskKit::CDownloadTaskBase::Delete. A task that waits is taken
// out of the queue for it and reported as deleted (200); one that is starting is asked once it has reported
// its start. False if there is no such task, or if its Delete says so.
FETCHYARDLOGICAL_API bool DeleteTask(const std::string& guid);
// Waits until nothing waits or runs. False if the time is over first.
FETCHYARDLOGICAL_API bool WaitUntilIdle(std::chrono::milliseconds timeout);

}  // namespace FetchyardLogical
