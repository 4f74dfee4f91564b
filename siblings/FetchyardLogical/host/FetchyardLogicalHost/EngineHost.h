#pragma once

#include "FetchyardLogical/Export.h"
#include "ZellBase/Error.h"
#include "ZellTaskKit/DownloadTaskBase.h"
#include "ZellTaskKit/DownloadTypes.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

// The engine and its task store, as the program that hosts them sees them. Every operation may be called from
// any thread at any time, also from inside an observer's call; only the waits may not, for what they wait for
// would wait for them. A state that comes of a call from inside an observer reaches the observers when that
// call of the observer has returned.
//
// Tasks are known from their hand-over until they are removed from the list or, without a store, until the
// engine's Unit.
namespace FetchyardLogical {

// Which resume record a task has: the number that stands in it as TaskParamType.
enum class RecordKind : int {
    None = 0,  // a simple download: nothing of it comes back
    Export = 1,
    PersonPictures = 3,
    Transcoding = 100,
    Unknown = -1,  // a record of a kind that came after this version
};

// One task of the list, at the moment of the call.
struct TaskView
{
    unsigned int number = 0;  // of GetAllTask; 0 for one of an earlier start of the engine
    std::string guid;
    std::string plugin_id;
    std::string name;
    std::string folder;
    ZellTaskKit::DownloadState state = ZellTaskKit::Unstarted;  // last report; Unstarted while it waits
    Zell::Base::Error::ErrorCode error;                         // that came with it
    std::string error_text;                                     // through the engine's text callback
    bool is_waiting = false;                                    // in the queue
    bool is_running = false;                                    // Exec has begun and not returned
    // From here on also of tasks that an earlier start of the engine left in the store.
    bool is_stored_only = false;  // there is no task object behind it in this start of the engine
    bool is_interrupted = false;  // such a one that never told an end: it may be brought back, see ResumeText
    RecordKind record_kind = RecordKind::None;
    std::uint64_t queue_order = 0;  // rises with each hand-over; bring tasks back in this order
    long long handed_over = 0;      // milliseconds since 1970, 0 for not yet; these three are of the last run
    long long started = 0;          // Exec was called
    long long ended = 0;            // Exec returned, or the task was taken out of the queue
    // Of living tasks only.
    unsigned long pages = 0;                          // report pages delivered in this run
    std::map<std::string, std::string> failed_files;  // of the last run that had any: name to reason
    // Of the last run that failed at its list call, as the server told it; see CmsGetPersonPicFileData.
    std::string remaining_login_count;
    std::string remaining_login_type;
};

// ---- The store ----

// Keeps all tasks of this process in the file from now on, and lists those that are in it. To be called while
// the engine is down, before its Init. Without it tasks are in memory only. The folder must be there. Beside
// the file lie its write-ahead log, the two files of what was told last and the lock; see docs/store.md.
//
// False, with the reason in words, if tasks are in memory only in spite of it: the file can't be written,
// it is of a newer version or no task store at all (it is then left as it is), or another process has it
// open: the second client on one store works, but what it does is not kept. True with a message if something
// in the file was damaged and set aside; the message says where. True with an empty message if all is well.
FETCHYARDLOGICAL_API bool OpenTaskStore(const std::string& path, std::string& message);
// Writes out what is left, gives the file back and forgets what it held. The engine must be down: false if it
// is not. A process may as well end without it and loses nothing.
FETCHYARDLOGICAL_API bool CloseTaskStore();
// The tasks in a store that another process may have open, as of the last twentieth of a second, without
// touching anything. False with the reason if there is none or it can't be read.
FETCHYARDLOGICAL_API bool ReadTaskStore(const std::string& path, std::vector<TaskView>& tasks,
                                        std::string& message);
// What keeps the store from keeping tasks at the moment (no room, an unreadable disk), in words; empty if
// nothing does. The engine goes on in memory meanwhile and catches up once the store works again.
FETCHYARDLOGICAL_API std::string StoreTrouble();

// ---- Tasks ----

// All tasks, those of earlier starts and those of this one, in the order of the list: that of the first
// hand-over, where a task that was brought back stands in the place of what it came from.
FETCHYARDLOGICAL_API std::vector<TaskView> ListTasks();
// One task of the list. False if there is no such task.
FETCHYARDLOGICAL_API bool FindTask(const std::string& guid, TaskView& view);
// The last resume record of a task, stored or living; empty if it has none or is not there.
FETCHYARDLOGICAL_API std::string ResumeText(const std::string& guid);

// Hands over a task that was made from the resume record of a stored one. The new task takes the place, and
// where its own record has none the name and the folder, of the stored one, which is gone with that: in one
// step, on disk too. False, with everything as it was, if there is no such stored task, it was taken already,
// or the engine does not take the task (see CDownloadTaskManager::AddTransferTask).
FETCHYARDLOGICAL_API bool HandOverInPlaceOf(const std::string& stored_guid,
                                            const std::shared_ptr<ZellTaskKit::CDownloadTaskBase>& task);

// Asks a task to stop: one that waits is taken out of the queue and reported as stopped (6, or 12 for an
// evidence export); one whose thread has started but that has not reported its start is asked once it has.
// False if there is no such task or its Exec has returned; whether a running task heeds the request is the
// task's own affair.
FETCHYARDLOGICAL_API bool StopTask(const std::string& guid);

// What becomes of the folder of a task that is deleted.
enum class FolderFate {
    Keep,
    // Removed with all that is in it when the task has reported state 200 and its Exec has returned, before
    // the engine counts as idle; also at the next opening of the store if the process ended in between. Only
    // the own folder of an export is (of reports or person pictures): one that held no file when the task was
    // first handed over, that no other task of the list has or has a folder in, and that neither is nor holds
    // a data folder of the client.
    Remove,
};
// Asks a task to delete what it has; see ZellTaskKit::CDownloadTaskBase::Delete. A task that waits is taken
// out of the queue for it and reported as deleted (200); one that is starting is asked once it has reported
// its start. False if there is no such task (a stored one is removed from the list instead), or if its Delete
// says so.
FETCHYARDLOGICAL_API bool DeleteTask(const std::string& guid, FolderFate folder = FolderFate::Keep);

// Queues a living task again that has ended, under its guid and in its place of the list. False if there is
// none, it waits or runs, or it was deleted (200). A stored one is made anew from its resume record instead.
FETCHYARDLOGICAL_API bool StartTaskAgain(const std::string& guid);
// Takes a task out of the list and the store. False if there is none or it waits or runs. Files stay.
FETCHYARDLOGICAL_API bool RemoveFromList(const std::string& guid);
// Takes out all that ended well (4, 10) or were deleted (200); how many those were. Failed, stopped and
// interrupted ones stay, since they can be started again or brought back.
FETCHYARDLOGICAL_API std::size_t ClearFinished();

// Waits until nothing waits or runs. False if the time is over first.
FETCHYARDLOGICAL_API bool WaitUntilIdle(std::chrono::milliseconds timeout);

}  // namespace FetchyardLogical
