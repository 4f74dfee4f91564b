#pragma once

#include "Store/StoredTask.h"

#include <memory>
#include <string>
#include <vector>

namespace FetchyardLogical::details {

// Where tasks are kept. All operations may be called from any thread; none waits for a disk but Flush.
class TaskStore
{
public:
    struct Opening
    {
        std::shared_ptr<TaskStore> store;  // null if the file can't be used; message says why
        std::vector<StoredTask> tasks;     // in the order of the list
        std::string message;               // also of what was set aside
    };
    static Opening Open(const std::string& path);
    // Without opening it for this process; see ReadTaskStore.
    static bool Read(const std::string& path, std::vector<StoredTask>& tasks, std::string& message);

    TaskStore() = default;
    TaskStore(const TaskStore&) = delete;
    TaskStore& operator=(const TaskStore&) = delete;
    virtual ~TaskStore() = default;

    // When it returns, the changes survive the end of the process in any way. All of them or none.
    virtual void Keep(Changes changes) = 0;
    // The last kept one; empty if there is none.
    virtual std::string ResumeText(const std::string& guid) = 0;
    // Waits until all that was kept survives a loss of power as well, or can't be written.
    virtual void Flush() = 0;
    virtual std::string Trouble() = 0;
};

}  // namespace FetchyardLogical::details
