// The threads of the engine, and what one of them does with a task.
#include "Engine/Engine.h"
#include "Engine/TaskStates.h"
#include "Log.h"
#include "Report/ReadAhead.h"
#include "ZellBase/Error.h"
#include "ZellBaseHost/ProcessExit.h"

#include <algorithm>
#include <exception>
#include <system_error>

using Zell::Base::Error::ErrorCode;
using namespace ZellTaskKit;

namespace FetchyardLogical::details {

namespace {

// The task that this thread runs.
thread_local TaskEntry* current_entry = nullptr;

}  // namespace

bool IsTaskThread()
{
    return current_entry != nullptr;
}

bool RunsHere(const TaskEntry& entry)
{
    return current_entry == &entry;
}

void Engine::CountPage()
{
    if (current_entry == nullptr)
        return;
    ++current_entry->pages;
    current_entry->engine.KeepNowAndThen(*current_entry);
}

bool Engine::Init()
{
    std::unique_lock<std::mutex> lock(mutex_);
    if (IsTaskThread())
        return life_ == Life::Up;
    settled_.wait(lock, [this] { return life_ != Life::GoingDown; });
    if (life_ == Life::Up)
        return true;
    life_ = Life::Up;
    if (StartWorkers())
        return true;
    life_ = Life::Down;
    return false;
}

// The lock is held. Starts threads until as many are there as tasks may and want to run, one at least, so
// that an engine that is up always gets on. False if the system gives no more.
bool Engine::StartWorkers()
{
    if (life_ != Life::Up)
        return true;
    const std::size_t wanted = std::max<std::size_t>(
        1, std::min<std::size_t>(static_cast<std::size_t>(limit_), running_ + waiting_.size()));
    try {
        while (workers_.size() < wanted)
            workers_.emplace_back([self = shared_from_this()] { self->WorkerMain(); });
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void Engine::WorkerMain()
{
    const Zell::Base::details::CWorkerMark mark;
    while (const EntryPtr entry = NextTask()) {
        RunTask(*entry);
        Finish(*entry);
        // Tasks that take no time would keep those from the processor who are to hear of them.
        std::this_thread::yield();
    }
}

// Waits until a task may run; null when the engine goes down. A thread that waits here touches nothing but
// the engine, which it holds. The lock is let go before the mark, whose end may never return.
EntryPtr Engine::NextTask()
{
    const Zell::Base::details::CBlockedMark blocked;
    std::unique_lock<std::mutex> lock(mutex_);
    work_.wait(lock, [this] {
        return life_ != Life::Up || (!waiting_.empty() && running_ < static_cast<std::size_t>(limit_));
    });
    if (life_ != Life::Up)
        return nullptr;
    const auto first = waiting_.begin();
    EntryPtr entry = std::move(first->second);
    waiting_.erase(first);
    entry->phase = Phase::Starting;
    entry->kept.started = WallClock();
    ++running_;
    return entry;
}

void Engine::RunTask(TaskEntry& entry)
{
    current_entry = &entry;
    try {
        Zell::Base::Error::SetLastError(ErrorCode());
        const auto record = entry.task->GetDownloadTaskParam<CDownloadTaskParam>();
        // The task copies its request at the head of Exec, so the account has to be in it by then.
        if (record && record->GetIsExportSensitiveInfo() && !entry.task->SetAccountInforToRequest())
            FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::details::Engine::RunTask",
                                  "task %s did not take the account", entry.guid.c_str());
        Zell::Base::Error::SetLastError(ErrorCode());
        entry.task->Exec();
    } catch (const std::exception& error) {
        FailRun(entry, error.what());
    } catch (...) {
        FailRun(entry, "an exception of unknown type");
    }
    DropReadAhead();
    // A list call that fails changes the record behind the report of it.
    KeepEnd(entry);
    current_entry = nullptr;
}

void Engine::KeepEnd(TaskEntry& entry)
{
    Change change;
    change.kind = Change::Kind::Update;
    change.resume_text = NewResumeText(entry);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        entry.kept.ended = WallClock();
        if (change.resume_text)
            entry.resume_text = change.resume_text;
        change.task = entry.kept;
    }
    Keep({std::move(change)});
}

// A task must not throw; one that does has failed, unless it had told its end before.
void Engine::FailRun(TaskEntry& entry, const char* what)
{
    FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::Engine::FailRun", "exception out of task %s: %s",
                          entry.guid.c_str(), what);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (entry.end_reported)
            return;
    }
    const DownloadState failed = IsEvidence(entry) ? UploadFailed : Failed;
    CallGuarded("NotifyTaskState", [&] { entry.task->NotifyTaskState(failed); });
}

// Exec has returned: only now the task has ended, whatever it reported before.
void Engine::Finish(TaskEntry& entry)
{
    DropDeletedFolder(entry);
    bool silent = false;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        silent = !entry.end_reported;
        entry.phase = Phase::Ended;
        entry.stop_held = false;
        entry.delete_held = false;
        --running_;
    }
    settled_.notify_all();
    if (silent)
        FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::details::Engine::Finish",
                              "task %s ended without an end state", entry.guid.c_str());
}

}  // namespace FetchyardLogical::details
