// States: what a task reports, what is kept of it, who is told.
#include "Engine/Engine.h"

#include "Engine/ResumeRecord.h"
#include "Engine/TaskStates.h"
#include "Log.h"

#include <algorithm>
#include <exception>
#include <utility>

using Zell::Base::Error::ErrorCode;
using namespace ZellTaskKit;

namespace FetchyardLogical::details {

namespace {

// How often a record is written out because a task handed it back or has a page.
constexpr std::chrono::seconds kBetweenRecords(1);

struct Telling
{
    std::shared_ptr<IReportSink> sink;
    CTaskCallbackParam report;
};
// Where reports of this thread go while it is inside an observer; null while it is not.
thread_local std::vector<Telling>* held_back = nullptr;

// An observer's list is locked while it is told, so what comes of a request that an observer makes is told
// when it has returned.
void Tell(const std::shared_ptr<IReportSink>& sink, const CTaskCallbackParam& report)
{
    if (held_back != nullptr) {
        held_back->push_back({sink, report});
        return;
    }
    std::vector<Telling> tellings{{sink, report}};
    held_back = &tellings;
    for (std::size_t i = 0; i < tellings.size(); ++i) {
        const Telling telling = tellings[i];
        CallGuarded("an observer", [&] { telling.sink->OnReports({telling.report}); });
    }
    held_back = nullptr;
}

}  // namespace

TaskEntry::TaskEntry(Engine& owner, TaskPtr held, StoredTask known)
    : engine(owner), task(std::move(held)), guid(known.guid), kept(std::move(known))
{
}

bool TaskEntry::HasClaim() const
{
    return task || !IsEndState(kept.state);
}

void TaskEntry::OnTaskState(const CTaskCallbackParam& report)
{
    engine.OnReport(*this, report);
}

void TaskEntry::OnTaskParamChanged(const std::string& /*guid*/)
{
    if (RunsHere(*this))
        engine.KeepNowAndThen(*this);
}

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

long long WallClock()
{
    const auto since = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(since).count();
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
    for (const auto& numbered : living_)
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
        for (const auto& [number, entry] : living_)
            tasks->emplace_hint(tasks->end(), number, entry->task);
        snapshot_ = std::move(tasks);
    }
    return snapshot_;
}

// The one place where a task's state changes; the lock is held. It records and never refuses: what a task
// has told the observers must not look different here. False if the contract does not know the step. An end
// state is not the end of a run: only the return of Exec is.
bool Engine::ChangeState(TaskEntry& entry, DownloadState next, const ErrorCode& error)
{
    const bool handed_over = next == Unstarted && entry.phase == Phase::Entering;
    const bool expected = handed_over || CanFollow(entry.kept.state, next);
    entry.kept.state = next;
    entry.kept.error = error;
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

// Kept first, told then: no observer knows more than a later start of the engine will.
void Engine::OnReport(TaskEntry& entry, const CTaskCallbackParam& report)
{
    const DownloadState state = report.GetVal_state();
    const ErrorCode error = report.GetVal_error_code();
    const std::string error_text = TextOf(error);
    Change change;
    change.kind = Change::Kind::Update;
    change.resume_text = RunsHere(entry) ? NewResumeText(entry) : nullptr;
    HeldRequests held;
    std::shared_ptr<IReportSink> sink;
    DownloadState before = Unstarted;
    bool expected = true;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        before = entry.kept.state;
        expected = ChangeState(entry, state, error);
        entry.kept.error_text = error_text;
        if (entry.phase == Phase::Leaving)
            entry.kept.ended = WallClock();
        if (change.resume_text)
            entry.resume_text = change.resume_text;
        change.task = entry.kept;
        held = TakeHeld(entry, state);
        sink = sink_;
    }
    Keep({std::move(change)});
    if (!expected)
        FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::details::Engine::OnReport",
                              "task %s reports state %d behind state %d", entry.guid.c_str(),
                              static_cast<int>(state), static_cast<int>(before));
    if (state == Failed || state == UploadFailed)
        FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::details::Engine::OnReport",
                              "task %s failed with %d/%d: %s", entry.guid.c_str(), error.iFirstCode,
                              error.iSecondCode, error_text.c_str());
    if (sink)
        Tell(sink, report);
    if (held.stop)
        CallGuarded("Stop", [&] { entry.task->Stop(); });
    if (held.remove)
        CallGuarded("Delete", [&] { entry.task->Delete(); });
}

std::string Engine::TextOf(const ErrorCode& error)
{
    std::string text;
    if (error.iFirstCode == 0 && error.iSecondCode == 0)
        return text;
    std::shared_ptr<const TextCallback> callback;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        callback = text_callback_;
    }
    if (callback)
        CallGuarded("the text callback", [&] { text = (*callback)(error); });
    return text;
}

ResumeTextPtr Engine::NewResumeText(TaskEntry& entry)
{
    entry.asked = std::chrono::steady_clock::now();
    ResumeTextPtr text = AskResumeText(*entry.task);
    if (text && entry.resume_text && *text == *entry.resume_text)
        return nullptr;
    return text;
}

void Engine::KeepResumeText(TaskEntry& entry)
{
    Change change;
    change.kind = Change::Kind::Update;
    change.resume_text = NewResumeText(entry);
    if (!change.resume_text)
        return;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        entry.resume_text = change.resume_text;
        change.task = entry.kept;
    }
    Keep({std::move(change)});
}

void Engine::KeepNowAndThen(TaskEntry& entry)
{
    if (std::chrono::steady_clock::now() - entry.asked >= kBetweenRecords)
        KeepResumeText(entry);
}

std::shared_ptr<TaskStore> Engine::Store()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return store_;
}

void Engine::Keep(Changes changes)
{
    if (const std::shared_ptr<TaskStore> store = Store())
        store->Keep(std::move(changes));
}

}  // namespace FetchyardLogical::details
