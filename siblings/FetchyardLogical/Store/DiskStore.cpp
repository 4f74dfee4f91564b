#include "Store/DiskStore.h"

#include "Log.h"
#include "Store/ChangeText.h"
#include "Store/SetAside.h"

#include <chrono>
#include <utility>

namespace FetchyardLogical::details {

namespace {

constexpr std::chrono::milliseconds kGroup(50);
// How long the store waits after a group that could not be written.
constexpr std::chrono::seconds kBetweenTries(1);

}  // namespace

DiskStore::DiskStore(std::string path, std::unique_ptr<StoreLock> lock, std::unique_ptr<TaskTable> table,
                     Journal journal, std::uint64_t complete)
    : path_(std::move(path)),
      lock_(std::move(lock)),
      table_(std::move(table)),
      journal_(std::move(journal)),
      last_(complete),
      complete_(complete),
      writer_([this] { WriterMain(); })
{
}

DiskStore::~DiskStore()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        closing_ = true;
    }
    wake_.notify_all();
    writer_.join();
    if (pending_.IsEmpty())
        journal_.Clear();
}

void DiskStore::Keep(Changes changes)
{
    const std::string bytes = WriteChanges(changes);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        std::string reason;
        // The number of a frame that is not there is the next one's: a gap would look like damage.
        if (journal_.Append(last_ + 1, complete_, bytes, reason))
            ++last_;
        else
            SetTrouble(reason);
        for (Change& change : changes)
            pending_.Add(std::move(change));
    }
    wake_.notify_all();
}

std::string DiskStore::ResumeText(const std::string& guid)
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        std::string text;
        if (pending_.KnowText(guid, text) || (writing_ && writing_->KnowText(guid, text)))
            return text;
    }
    const std::lock_guard<std::mutex> lock(reader_mutex_);
    try {
        if (!reader_)
            reader_ = std::make_unique<TaskTable>(path_, Sqlite::Use::Read);
        return reader_->ResumeText(guid);
    } catch (const SqliteFailure& failure) {
        if (failure.IsDamage())
            MarkSuspect(path_);
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::DiskStore::ResumeText",
                              "the resume record of task %s can't be read: %s", guid.c_str(), failure.what());
        return {};
    }
}

void DiskStore::Flush()
{
    std::unique_lock<std::mutex> lock(mutex_);
    // A group that is on its way now may lack the newest changes.
    const std::uint64_t tries = groups_ + (writing_ ? 2 : 1);
    hurry_ = true;
    wake_.notify_all();
    written_.wait(lock, [&] { return groups_ >= tries || (pending_.IsEmpty() && !writing_); });
}

std::string DiskStore::Trouble()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return trouble_;
}

// The lock is held.
void DiskStore::SetTrouble(const std::string& words)
{
    if (trouble_.empty())
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::DiskStore::SetTrouble",
                              "the task store %s can't be written, tasks are in memory only: %s",
                              path_.c_str(), words.c_str());
    trouble_ = "The task store " + path_ + " can't be written, tasks are in memory only: " + words + ".";
}

void DiskStore::WriterMain()
{
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return closing_ || !pending_.IsEmpty() || hurry_; });
        const std::chrono::milliseconds pause = trouble_.empty() ? kGroup : kBetweenTries;
        wake_.wait_for(lock, pause, [this] { return closing_ || hurry_; });
        hurry_ = false;
        WriteGroup(lock);
        if (closing_ && (pending_.IsEmpty() || !trouble_.empty()))
            return;
    }
}

void DiskStore::WriteGroup(std::unique_lock<std::mutex>& lock)
{
    std::string failed;
    if (!pending_.IsEmpty()) {
        const std::uint64_t number = last_;
        const auto group = std::make_shared<const LastChanges>(std::exchange(pending_, LastChanges()));
        writing_ = group;
        journal_.TakeTurns(complete_);
        lock.unlock();
        try {
            table_->Write(*group, number);
        } catch (const SqliteFailure& failure) {
            failed = failure.what();
            if (failure.IsDamage())
                MarkSuspect(path_);
        }
        lock.lock();
        writing_ = nullptr;
        if (failed.empty()) {
            complete_ = number;
        } else {
            LastChanges all = *group;
            all.Add(std::exchange(pending_, LastChanges()));
            pending_ = std::move(all);
        }
    }
    ++groups_;
    if (!failed.empty())
        SetTrouble(failed);
    else if (!trouble_.empty()) {
        FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::details::DiskStore::WriteGroup",
                              "the task store %s works again", path_.c_str());
        trouble_.clear();
    }
    written_.notify_all();
}

}  // namespace FetchyardLogical::details
