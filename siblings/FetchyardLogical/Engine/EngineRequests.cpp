// What a host asks of the engine: down, list, stop, delete, wait.
#include "Engine/Engine.h"
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

// "ArrayList[1]/FileName" and "ArrayList[1]/ErrorReason" and so on, as the tasks name them.
std::map<std::string, std::string> FailedFiles(const std::map<std::string, std::string>& values)
{
    std::map<std::string, std::string> files;
    const std::string end = "/FileName";
    for (const auto& [name, file] : values) {
        if (name.size() <= end.size() || name.compare(name.size() - end.size(), end.size(), end) != 0)
            continue;
        const auto reason = values.find(name.substr(0, name.size() - end.size()) + "/ErrorReason");
        files.emplace(file, reason == values.end() ? std::string() : reason->second);
    }
    return files;
}

void FillFromRecord(CDownloadTaskBase& task, TaskView& view)
{
    if (task.GetErrorParamState()) {
        std::map<std::string, std::string> values = task.GetErrorParam();
        view.failed_files = FailedFiles(values);
        view.remaining_login_count = values["RemainingLoginNumber"];
        view.remaining_login_type = values["RemainingLoginType"];
    }
    const auto record = task.GetDownloadTaskParam<CDownloadTaskParam>();
    if (!record)
        return;
    view.name = record->GetVal_str_name();
    view.folder = record->GetVal_str_file_path();
}

}  // namespace

bool Engine::Unit()
{
    if (IsTaskThread())
        return false;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (life_ != Life::Up)
            return false;
        life_ = Life::GoingDown;
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
        for (const auto& numbered : entries_) {
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

// No worker is left. A call of StopTask or DeleteTask that is under way holds its own entry.
void Engine::ForgetAll()
{
    std::map<unsigned int, EntryPtr> entries;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        entries.swap(entries_);
        by_guid_.clear();
        by_task_.clear();
        snapshot_.reset();
    }
    for (const auto& numbered : entries)
        numbered.second->task->SetTaskHost(nullptr);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        life_ = Life::Down;
    }
    settled_.notify_all();
}

std::vector<TaskView> Engine::List()
{
    std::vector<TaskView> views;
    std::vector<EntryPtr> entries;
    std::shared_ptr<const TextCallback> callback;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        views.reserve(entries_.size());
        entries.reserve(entries_.size());
        callback = text_callback_;
        for (const auto& [number, entry] : entries_) {
            TaskView view;
            view.number = number;
            view.guid = entry->guid;
            view.state = entry->state;
            view.error = entry->error;
            view.is_waiting = entry->phase == Phase::Waiting;
            view.is_running = IsBusy(entry->phase);
            view.pages = entry->pages;
            views.push_back(std::move(view));
            entries.push_back(entry);
        }
    }
    for (std::size_t i = 0; i < views.size(); ++i) {
        FillFromRecord(*entries[i]->task, views[i]);
        const ErrorCode error = views[i].error;
        if (callback && (error.iFirstCode != 0 || error.iSecondCode != 0))
            CallGuarded("the text callback", [&] { views[i].error_text = (*callback)(error); });
    }
    return views;
}

// The lock is held. The entry, if it was in the queue and is out of it now.
EntryPtr Engine::TakeOutOfQueue(const EntryPtr& entry)
{
    if (entry->phase != Phase::Waiting)
        return nullptr;
    waiting_.erase(entry->ticket);
    entry->phase = Phase::Leaving;
    ++leaving_;
    return entry;
}

void Engine::ReportLeaving(const EntryPtr& entry, DownloadState state)
{
    const LastErrorGuard no_error;
    CallGuarded("NotifyTaskState", [&] { entry->task->NotifyTaskState(state); });
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

bool Engine::DeleteTask(const std::string& guid)
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
        if (entry->phase == Phase::Starting) {
            entry->delete_held = true;
            return true;
        }
    }
    bool deleted = false;
    CallGuarded("Delete", [&] { deleted = entry->task->Delete(); });
    if (taken_out)
        ReportLeaving(entry, Deleted);
    return deleted;
}

bool Engine::WaitUntilIdle(std::chrono::milliseconds timeout)
{
    std::unique_lock<std::mutex> lock(mutex_);
    return settled_.wait_for(lock, timeout, [this] { return IsIdle(); });
}

}  // namespace FetchyardLogical::details
