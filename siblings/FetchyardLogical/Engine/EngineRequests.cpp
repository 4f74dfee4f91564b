// What a host asks of running tasks: down, stop, delete, wait.
#include "Engine/Engine.h"
#include "Engine/TaskStates.h"
#include "ZellBase/Error.h"

#include <utility>

using Zell::Base::Error::ErrorCode;
using namespace ZellTaskKit;

namespace FetchyardLogical::details {

namespace {

// A report of the engine's own carries no error, and leaves the caller's last error as it was.
class LastErrorGuard
{
public:
    LastErrorGuard() : saved_(Zell::Base::Error::GetLastError())
    {
        Zell::Base::Error::SetLastError(ErrorCode());
    }
    LastErrorGuard(const LastErrorGuard&) = delete;
    LastErrorGuard& operator=(const LastErrorGuard&) = delete;
    ~LastErrorGuard() { Zell::Base::Error::SetLastError(saved_); }

private:
    ErrorCode saved_;
};

bool IsBusy(Phase phase)
{
    return phase == Phase::Starting || phase == Phase::Running;
}

}  // namespace

bool Engine::Unit()
{
    if (IsTaskThread())
        return false;
    {
        std::unique_lock<std::mutex> lock(mutex_);
        if (life_ != Life::Up)
            return false;
        life_ = Life::GoingDown;
        settled_.wait(lock, [this] { return entering_ == 0; });
    }
    const std::vector<EntryPtr> running = AskAllToStop();
    for (const EntryPtr& entry : running)
        CallGuarded("Stop", [&] { entry->task->Stop(); });
    std::vector<std::thread> workers;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        workers.swap(workers_);
    }
    work_.notify_all();
    for (std::thread& worker : workers)
        worker.join();
    ForgetAll();
    return true;
}

// Takes out what waits and reports it, holds the stop for what is starting, and gives back what runs.
std::vector<EntryPtr> Engine::AskAllToStop()
{
    std::vector<EntryPtr> running;
    std::map<std::uint64_t, EntryPtr> waiting;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        waiting.swap(waiting_);
        leaving_ += waiting.size();
        for (const auto& queued : waiting)
            queued.second->phase = Phase::Leaving;
        for (const auto& numbered : living_) {
            TaskEntry& entry = *numbered.second;
            if (entry.phase == Phase::Starting)
                entry.stop_held = true;
            else if (entry.phase == Phase::Running)
                running.push_back(numbered.second);
        }
    }
    for (const auto& queued : waiting)
        ReportLeaving(queued.second, IsEvidence(*queued.second) ? UploadStopped : Stopped);
    return running;
}

// No worker is left. A call of StopTask or DeleteTask that is under way holds its own entry. With a store the
// tasks stay in the list, as those that a later start of the engine finds.
void Engine::ForgetAll()
{
    std::map<unsigned int, EntryPtr> living;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        living.swap(living_);
        by_task_.clear();
        snapshot_.reset();
    }
    for (const auto& numbered : living)
        numbered.second->task->SetTaskHost(nullptr);
    const std::shared_ptr<TaskStore> store = Store();
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        for (const auto& numbered : living) {
            if (numbered.second->phase == Phase::Going)
                continue;  // whoever takes it out of the list is about to
            Forget(numbered.second);
            if (store)
                AddStored(numbered.second->kept);
        }
    }
    if (store)
        store->Flush();
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        life_ = Life::Down;
    }
    settled_.notify_all();
}

// The lock is held. The entry, if it was in the queue and is out of it now.
EntryPtr Engine::TakeOutOfQueue(const EntryPtr& entry)
{
    if (entry->phase != Phase::Waiting)
        return nullptr;
    waiting_.erase(entry->kept.queue_order);
    entry->phase = Phase::Leaving;
    ++leaving_;
    return entry;
}

void Engine::ReportLeaving(const EntryPtr& entry, DownloadState state)
{
    const LastErrorGuard no_error;
    CallGuarded("NotifyTaskState", [&] { entry->task->NotifyTaskState(state); });
    DropDeletedFolder(*entry);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        entry->phase = Phase::Ended;
        --leaving_;
    }
    settled_.notify_all();
}

bool Engine::StopTask(const std::string& guid)
{
    EntryPtr entry;
    EntryPtr taken_out;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = by_guid_.find(guid);
        if (found == by_guid_.end())
            return false;
        entry = found->second;
        taken_out = TakeOutOfQueue(entry);
        if (!taken_out && !IsBusy(entry->phase))
            return false;
        if (entry->phase == Phase::Starting) {
            entry->stop_held = true;
            return true;
        }
    }
    if (taken_out)
        ReportLeaving(entry, IsEvidence(*entry) ? UploadStopped : Stopped);
    else
        CallGuarded("Stop", [&] { entry->task->Stop(); });
    return true;
}

bool Engine::DeleteTask(const std::string& guid, FolderFate folder)
{
    EntryPtr entry;
    EntryPtr taken_out;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = by_guid_.find(guid);
        if (found == by_guid_.end())
            return false;
        entry = found->second;
        taken_out = TakeOutOfQueue(entry);
        if (folder == FolderFate::Remove && (taken_out || IsBusy(entry->phase)))
            entry->kept.remove_folder = true;
        if (entry->phase == Phase::Starting) {
            entry->delete_held = true;
            return true;
        }
    }
    if (!entry->task)
        return DeleteStored(entry, folder);
    bool deleted = false;
    CallGuarded("Delete", [&] { deleted = entry->task->Delete(); });
    if (taken_out)
        ReportLeaving(entry, Deleted);
    return deleted;
}

// What an interrupted task has left belongs to nobody any more; what an ended one has left is what was asked
// for.
bool Engine::DeleteStored(const EntryPtr& entry, FolderFate folder)
{
    std::string left;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (entry->phase != Phase::Ended)
            return false;
        entry->phase = Phase::Going;
        const StoredTask& kept = entry->kept;
        if (folder == FolderFate::Remove && !IsEndState(kept.state) && kept.owns_folder &&
            claims_.IsFree(kept.folder, 1))
            left = kept.folder;
    }
    if (!left.empty())
        RemoveOwnFolder(left);
    RemoveEntries({entry});
    return true;
}

// A deleted export leaves its folder to whoever runs the engine; its task does not look at it any more.
void Engine::DropDeletedFolder(TaskEntry& entry)
{
    Change change;
    change.kind = Change::Kind::Update;
    bool is_own = false;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!entry.kept.remove_folder)
            return;
        is_own =
            entry.kept.state == Deleted && entry.kept.owns_folder && claims_.IsFree(entry.kept.folder, 1);
        entry.kept.remove_folder = false;
        change.task = entry.kept;
    }
    if (is_own)
        RemoveOwnFolder(change.task.folder);
    Keep({std::move(change)});
}

bool Engine::WaitUntilIdle(std::chrono::milliseconds timeout)
{
    std::unique_lock<std::mutex> lock(mutex_);
    return settled_.wait_for(lock, timeout, [this] { return IsIdle(); });
}

}  // namespace FetchyardLogical::details
