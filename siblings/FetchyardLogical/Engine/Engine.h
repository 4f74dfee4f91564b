#pragma once

#include "FetchyardLogicalHost/EngineHost.h"
#include "ZellTaskKit/DownloadTaskBase.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

namespace FetchyardLogical::details {

using TaskPtr = std::shared_ptr<ZellTaskKit::CDownloadTaskBase>;
using TaskMap = std::map<unsigned int, TaskPtr>;
using Reports = std::vector<ZellTaskKit::CTaskCallbackParam>;
using TextCallback = std::function<std::string(const Zell::Base::Error::ErrorCode&)>;

// Where the engine's reports go. Called on the thread that reports, with no lock of the engine held.
class IReportSink
{
public:
    IReportSink() = default;
    IReportSink(const IReportSink&) = delete;
    IReportSink& operator=(const IReportSink&) = delete;
    virtual ~IReportSink() = default;
    virtual void OnReports(const Reports& reports) = 0;
};

class Engine;

// Where a task stands with the engine. Only the engine's lock holder changes it:
//   Entering -> Waiting -> Starting -> Running -> Ended -> Entering (handed over again)
//               Waiting -> Leaving -> Ended                         (taken out of the queue)
//                          Starting -> Ended                        (Exec returned without a report)
enum class Phase {
    Entering,  // being handed over
    Waiting,   // in the queue
    Leaving,   // taken out of the queue, the report of it on its way
    Starting,  // a worker has it, and Exec has reported nothing yet
    Running,   // Exec has reported and has not returned
    Ended,     // not in the queue and not running
};

// One task of the engine, and the host that the task reports to.
class TaskEntry final : public ZellTaskKit::ITaskHost
{
public:
    TaskEntry(Engine& owner, TaskPtr held, std::string task_guid);

    void OnTaskState(const ZellTaskKit::CTaskCallbackParam& report) override;
    void OnTaskParamChanged(const std::string& guid) override;

    Engine& engine;
    const TaskPtr task;
    const std::string guid;  // as it was at the hand-over
    std::atomic<unsigned long> pages{0};

    // Under the engine's lock from here on.
    unsigned int number = 0;
    std::uint64_t ticket = 0;  // place in the queue
    Phase phase = Phase::Entering;
    ZellTaskKit::DownloadState state = ZellTaskKit::Unstarted;        // last report of this run
    ZellTaskKit::DownloadState start_state = ZellTaskKit::Unstarted;  // last 1 or 7, of any run
    Zell::Base::Error::ErrorCode error;
    bool end_reported = false;  // in this run
    bool stop_held = false;     // came while the task was starting
    bool delete_held = false;
};

using EntryPtr = std::shared_ptr<TaskEntry>;

// The queue engine. All operations may be called from any thread. No lock of it is held across a call into a
// task, a sink or a callback. Worker threads hold the engine, so it outlives them.
class Engine : public std::enable_shared_from_this<Engine>
{
public:
    // The engine of the process; never destroyed, since its threads may outlive all static objects.
    static const std::shared_ptr<Engine>& Shared();
    static constexpr int kFirstLimit = 5;

    Engine() = default;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    ~Engine();

    // See CDownloadTaskManager for these.
    bool Init();
    bool Unit();
    void SetLimit(int count);
    bool Add(const std::vector<TaskPtr>& tasks);
    void SetSink(std::shared_ptr<IReportSink> sink);
    void SetTextCallback(TextCallback callback);
    // Every task that the engine knows. The map is rebuilt only when tasks have come or gone since the last
    // call, and the one that was given out is never changed.
    std::shared_ptr<const TaskMap> Snapshot();

    // See EngineHost.h for these.
    std::vector<TaskView> List();
    bool StopTask(const std::string& guid);
    bool DeleteTask(const std::string& guid);
    bool WaitUntilIdle(std::chrono::milliseconds timeout);

    // Counts a page for the task that the calling thread runs, if it runs one.
    static void CountPage();

private:
    friend class TaskEntry;

    enum class Life { Down, Up, GoingDown };
    struct HeldRequests
    {
        bool stop = false;
        bool remove = false;
    };

    // Engine.cpp
    bool Admit(const std::vector<TaskPtr>& tasks, std::vector<EntryPtr>& entries, std::uint64_t& generation);
    EntryPtr AdmitOne(const TaskPtr& task, std::string guid);
    void MakeKnown(const EntryPtr& entry);
    bool Enqueue(const std::vector<EntryPtr>& entries, std::uint64_t generation);
    bool IsIdle() const { return waiting_.empty() && running_ == 0 && leaving_ == 0; }
    bool ChangeState(TaskEntry& entry, ZellTaskKit::DownloadState next,
                     const Zell::Base::Error::ErrorCode& error);
    bool IsEvidence(TaskEntry& entry);
    HeldRequests TakeHeld(TaskEntry& entry, ZellTaskKit::DownloadState reported);
    void OnReport(TaskEntry& entry, const ZellTaskKit::CTaskCallbackParam& report);
    void LogReport(const TaskEntry& entry, ZellTaskKit::DownloadState before,
                   const ZellTaskKit::CTaskCallbackParam& report, bool expected);

    // EngineRequests.cpp
    EntryPtr TakeOutOfQueue(const EntryPtr& entry);
    void ReportLeaving(const EntryPtr& entry, ZellTaskKit::DownloadState state);
    std::vector<EntryPtr> AskAllToStop();
    void ForgetAll();

    // EngineWorkers.cpp
    bool StartWorkers();
    void WorkerMain();
    EntryPtr NextTask();
    void RunTask(TaskEntry& entry);
    void FailRun(TaskEntry& entry, const char* what);
    void Finish(TaskEntry& entry);

    std::mutex mutex_;
    std::condition_variable work_;     // for workers: something may be run, or the engine goes down
    std::condition_variable settled_;  // for waiters: idle, or the life has changed
    Life life_ = Life::Down;
    std::uint64_t generation_ = 0;  // of Init; a hand-over that straddles a Unit is void
    int limit_ = kFirstLimit;
    std::size_t running_ = 0;  // tasks in Starting or Running
    std::size_t leaving_ = 0;
    unsigned int last_number_ = 0;
    std::uint64_t last_ticket_ = 0;
    std::map<std::uint64_t, EntryPtr> waiting_;  // by ticket
    std::map<unsigned int, EntryPtr> entries_;   // by number
    std::unordered_map<std::string, EntryPtr> by_guid_;
    std::unordered_map<const ZellTaskKit::CDownloadTaskBase*, EntryPtr> by_task_;
    std::shared_ptr<const TaskMap> snapshot_;  // null when entries_ has changed since
    std::vector<std::thread> workers_;
    std::shared_ptr<IReportSink> sink_;
    std::shared_ptr<const TextCallback> text_callback_;
};

// Whether the calling thread is a worker in a task's run.
bool IsTaskThread();
// Calls into a task or an observer, whose exceptions end here with a line at level 5.
void CallGuarded(const char* what, const std::function<void()>& call);

}  // namespace FetchyardLogical::details
