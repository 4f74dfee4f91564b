#include "Engine/Engine.h"

#include "Engine/TaskStates.h"
#include "Log.h"

#include <algorithm>
#include <exception>
#include <set>
#include <utility>

using Zell::Base::Error::ErrorCode;
using namespace ZellTaskKit;

namespace FetchyardLogical::details {

TaskEntry::TaskEntry(Engine& owner, TaskPtr held, std::string task_guid)
    : engine(owner), task(std::move(held)), guid(std::move(task_guid))
{
}

void TaskEntry::OnTaskState(const CTaskCallbackParam& report)
{
    engine.OnReport(*this, report);
}

// The engine asks the task for its record whenever it needs it, so there is nothing to take over.
void TaskEntry::OnTaskParamChanged(const std::string& /*guid*/) {}

void CallGuarded(const char* what, const std::function<void()>& call)
{
    try {
        call();
    } catch (const std::exception& error) {
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::CallGuarded", "exception out of %s: %s", what,
                              error.what());
    } catch (...) {
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::CallGuarded", "unknown exception out of %s",
                              what);
    }
}

const std::shared_ptr<Engine>& Engine::Shared()
{
    static const auto* const engine = new std::shared_ptr<Engine>(std::make_shared<Engine>());
    return *engine;
}

// Reached only when no worker is left, or on the last one's way out. Tasks may outlive the engine.
Engine::~Engine()
{
    for (std::thread& worker : workers_)
        worker.detach();
    for (const auto& numbered : entries_)
        numbered.second->task->SetTaskHost(nullptr);
}

void Engine::SetSink(std::shared_ptr<IReportSink> sink)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    sink_ = std::move(sink);
}

void Engine::SetTextCallback(TextCallback callback)
{
    auto kept = callback ? std::make_shared<const TextCallback>(std::move(callback)) : nullptr;
    const std::lock_guard<std::mutex> lock(mutex_);
    text_callback_.swap(kept);
}

bool Engine::Add(const std::vector<TaskPtr>& tasks)
{
    std::vector<EntryPtr> entries;
    std::uint64_t generation = 0;
    if (!Admit(tasks, entries, generation))
        return false;
    for (const EntryPtr& entry : entries)
        entry->task->SetTaskHost(entry.get());
    if (Enqueue(entries, generation))
        return true;
    // The engine went down in between and has forgotten them.
    for (const EntryPtr& entry : entries)
        entry->task->SetTaskHost(nullptr);
    return false;
}

// All of a batch or nothing. A task that is still in the queue or running can't be handed over again.
bool Engine::Admit(const std::vector<TaskPtr>& tasks, std::vector<EntryPtr>& entries,
                   std::uint64_t& generation)
{
    std::set<const CDownloadTaskBase*> distinct;
    std::vector<std::string> guids;
    guids.reserve(tasks.size());
    for (const TaskPtr& task : tasks) {
        if (!task || !distinct.insert(task.get()).second)
            return false;
        guids.push_back(task->GetGuid());
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    if (life_ != Life::Up || tasks.empty())
        return false;
    const bool busy = std::any_of(tasks.begin(), tasks.end(), [this](const TaskPtr& task) {
        const auto known = by_task_.find(task.get());
        return known != by_task_.end() && known->second->phase != Phase::Ended;
    });
    if (busy)
        return false;
    generation = generation_;
    entries.reserve(tasks.size());
    for (std::size_t i = 0; i < tasks.size(); ++i)
        entries.push_back(AdmitOne(tasks[i], std::move(guids[i])));
    return true;
}

EntryPtr Engine::AdmitOne(const TaskPtr& task, std::string guid)
{
    EntryPtr& entry = by_task_[task.get()];
    if (!entry)
        entry = std::make_shared<TaskEntry>(*this, task, std::move(guid));
    entry->phase = Phase::Entering;
    entry->pages = 0;
    ChangeState(*entry, Unstarted, ErrorCode());
    return entry;
}

// A task can be found from the moment at which it can be stopped.
void Engine::MakeKnown(const EntryPtr& entry)
{
    if (entry->number != 0)
        return;
    entry->number = ++last_number_;
    entries_.emplace_hint(entries_.end(), entry->number, entry);
    by_guid_[entry->guid] = entry;
    snapshot_.reset();
}

bool Engine::Enqueue(const std::vector<EntryPtr>& entries, std::uint64_t generation)
{
    bool enough = true;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (life_ != Life::Up || generation_ != generation)
            return false;
        for (const EntryPtr& entry : entries) {
            MakeKnown(entry);
            entry->phase = Phase::Waiting;
            entry->ticket = ++last_ticket_;
            waiting_.emplace_hint(waiting_.end(), entry->ticket, entry);
        }
        enough = StartWorkers();
    }
    work_.notify_all();
    if (!enough)
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::Engine::Enqueue",
                              "no further thread could be started, %zu tasks queued", entries.size());
    return true;
}

void Engine::SetLimit(int count)
{
    bool enough = true;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        limit_ = std::max(count, 1);
        enough = StartWorkers();
    }
    work_.notify_all();
    if (!enough)
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::Engine::SetLimit",
                              "no further thread could be started, limit %d", count);
}

std::shared_ptr<const TaskMap> Engine::Snapshot()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!snapshot_) {
        auto tasks = std::make_shared<TaskMap>();
        for (const auto& [number, entry] : entries_)
            tasks->emplace_hint(tasks->end(), number, entry->task);
        snapshot_ = std::move(tasks);
    }
    return snapshot_;
}

// The one place where a task's state changes; the lock is held. It records and never refuses: what a task
// has told the observers must not look different here. False if the contract does not know the step.
bool Engine::ChangeState(TaskEntry& entry, DownloadState next, const ErrorCode& error)
{
    const bool handed_over = next == Unstarted && entry.phase == Phase::Entering;
    const bool expected = handed_over || CanFollow(entry.state, next);
    entry.state = next;
    entry.error = error;
    if (handed_over) {
        entry.end_reported = false;
        entry.stop_held = false;
        entry.delete_held = false;
    }
    if (IsStartState(next))
        entry.start_state = next;
    if (IsEndState(next))
        entry.end_reported = true;
    return expected;
}

// What a run has told of itself goes before what its record says.
bool Engine::IsEvidence(TaskEntry& entry)
{
    DownloadState start_state = Unstarted;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        start_state = entry.start_state;
    }
    if (start_state != Unstarted)
        return start_state == Uploading;
    const auto record = entry.task->GetDownloadTaskParam<CDownloadTaskParam>();
    return record && record->GetVal_state() == Uploading;
}

// The first report ends the time in which requests are held; one that is an end leaves nothing to ask for.
Engine::HeldRequests Engine::TakeHeld(TaskEntry& entry, DownloadState reported)
{
    HeldRequests held;
    if (entry.phase != Phase::Starting)
        return held;
    entry.phase = Phase::Running;
    if (!IsEndState(reported))
        held = {entry.stop_held, entry.delete_held};
    entry.stop_held = false;
    entry.delete_held = false;
    return held;
}

void Engine::OnReport(TaskEntry& entry, const CTaskCallbackParam& report)
{
    HeldRequests held;
    std::shared_ptr<IReportSink> sink;
    DownloadState before = Unstarted;
    bool expected = true;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        before = entry.state;
        expected = ChangeState(entry, report.GetVal_state(), report.GetVal_error_code());
        held = TakeHeld(entry, report.GetVal_state());
        sink = sink_;
    }
    LogReport(entry, before, report, expected);
    if (sink)
        CallGuarded("an observer", [&] { sink->OnReports({report}); });
    if (held.stop)
        CallGuarded("Stop", [&] { entry.task->Stop(); });
    if (held.remove)
        CallGuarded("Delete", [&] { entry.task->Delete(); });
}

void Engine::LogReport(const TaskEntry& entry, DownloadState before, const CTaskCallbackParam& report,
                       bool expected)
{
    const DownloadState state = report.GetVal_state();
    if (!expected)
        FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::details::Engine::OnReport",
                              "task %s reports state %d behind state %d", entry.guid.c_str(),
                              static_cast<int>(state), static_cast<int>(before));
    if (state != Failed && state != UploadFailed)
        return;
    std::shared_ptr<const TextCallback> callback;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        callback = text_callback_;
    }
    const ErrorCode error = report.GetVal_error_code();
    std::string text;
    if (callback)
        CallGuarded("the text callback", [&] { text = (*callback)(error); });
    FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::details::Engine::OnReport", "task %s failed with %d/%d: %s",
                          entry.guid.c_str(), error.iFirstCode, error.iSecondCode, text.c_str());
}

}  // namespace FetchyardLogical::details
