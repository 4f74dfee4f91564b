#pragma once

#include "Platform/StoreFile.h"
#include "Store/Journal.h"
#include "Store/LastChanges.h"
#include "Store/TaskStore.h"
#include "Store/TaskTable.h"

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace FetchyardLogical::details {

// A store in a database file, with a journal for what is not in it yet.
//
// Two promises pull in different directions: what an observer was told survives the end of the process at any
// moment, and no observer waits for a disk. So Keep hands each change to the system in one write to the
// journal, which does not wait for the disk and outlives the process, and this object's own thread brings the
// changes of at most 50 ms together, writes them into the database in one transaction that is flushed to the
// disk, and lets the journal write over them. What the database lacks after a kill is read from the journal
// at the next opening; a loss of power can take the journal's unflushed part, that is the last group.
class DiskStore final : public TaskStore
{
public:
    // The table is Ready and holds all changes up to the number.
    DiskStore(std::string path, std::unique_ptr<StoreLock> lock, std::unique_ptr<TaskTable> table,
              Journal journal, std::uint64_t complete);
    ~DiskStore() override;

    void Keep(Changes changes) override;
    std::string ResumeText(const std::string& guid) override;
    void Flush() override;
    std::string Trouble() override;

private:
    void WriterMain();
    void WriteGroup(std::unique_lock<std::mutex>& lock);
    void SetTrouble(const std::string& words);

    const std::string path_;
    const std::unique_ptr<StoreLock> lock_;
    const std::unique_ptr<TaskTable> table_;  // of the writer's thread

    std::mutex reader_mutex_;
    std::unique_ptr<TaskTable> reader_;  // made when it is needed first

    std::mutex mutex_;
    std::condition_variable wake_;     // for the writer
    std::condition_variable written_;  // for Flush: a group is in, or could not be written
    Journal journal_;
    LastChanges pending_;                         // not in the database
    std::shared_ptr<const LastChanges> writing_;  // on their way into it
    std::uint64_t last_ = 0;                      // number of the newest change
    std::uint64_t complete_ = 0;                  // the database has all changes up to this one
    std::uint64_t groups_ = 0;                    // tried so far
    std::string trouble_;
    bool hurry_ = false;
    bool closing_ = false;
    std::thread writer_;
};

}  // namespace FetchyardLogical::details
