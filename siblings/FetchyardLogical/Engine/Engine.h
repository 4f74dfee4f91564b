#pragma once

#include "Engine/OwnFolder.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "Store/StoredTask.h"
#include "Store/TaskStore.h"
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
//   Ended -> Going                                                  (taken out of the list, or its place
//   taken)
enum class Phase {
    Entering,  // being handed over
    Waiting,   // in the queue
    Leaving,   // taken out of the queue, the report of it on its way
    Starting,  // a worker has it, and Exec has reported nothing yet
    Running,   // Exec has reported and has not returned
    Ended,     // not in the queue and not running
    Going,     // on its way out of the list
};

// One task of the list, and the host that a living task reports to.
class TaskEntry final : public ZellTaskKit::ITaskHost
{
public:
    TaskEntry(Engine& owner, TaskPtr held, StoredTask known);

    void OnTaskState(const ZellTaskKit::CTaskCallbackParam& report) override;
    void OnTaskParamChanged(const std::string& guid) override;

    // Whether it still counts as one that has its folder; the lock is held. What ended in an earlier start of
    // the engine does not: it has left its files, if any.
    bool HasClaim() const;

    Engine& engine;
    const TaskPtr task;      // null for one that only the store knows
    const std::string guid;  // as it was at the hand-over
    std::atomic<unsigned long> pages{0};
    // When the record was asked for its text last; of the thread that hands over or runs the task.
    std::chrono::steady_clock::time_point asked;

    // Under the engine's lock from here on. The text is changed by the thread that hands over or runs the
    // task only, which may read it without the lock.
    StoredTask kept;
    ResumeTextPtr resume_text;
    unsigned int number = 0;
    Phase phase = Phase::Entering;
    ZellTaskKit::DownloadState start_state = ZellTaskKit::Unstarted;  // last 1 or 7, of any run
    bool end_reported = false;                                        // in this run
    bool stop_held = false;                                           // came while the task was starting
    bool delete_held = false;
};

using EntryPtr = std::shared_ptr<TaskEntry>;

// The queue engine. All operations may be called from any thread. No lock of it is held across a call into a
// task, a sink, a callback or the store. Worker threads hold the engine, so it outlives them.
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
    // Every living task. The map is rebuilt only when tasks have come or gone since the last call, and the
    // one that was given out is never changed.
    std::shared_ptr<const TaskMap> Snapshot();

    // See EngineHost.h for these.
    bool OpenStore(const std::string& path, std::string& message);
    bool CloseStore();
    std::string StoreTrouble();
    std::vector<TaskView> List();
    bool Find(const std::string& guid, TaskView& view);
    std::string ResumeText(const std::string& guid);
    bool AddInPlaceOf(const std::string& stored_guid, const TaskPtr& task);
    bool StopTask(const std::string& guid);
    bool DeleteTask(const std::string& guid, FolderFate folder = FolderFate::Keep);
    bool StartAgain(const std::string& guid);
    bool Remove(const std::string& guid);
    std::size_t ClearFinished();
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
    // What a task's record says at the hand-over.
    struct Look
    {
        StoredTask facts;
        ResumeTextPtr resume_text;
        bool folder_is_empty = false;
    };
    // Tasks on their way in.
    struct Batch
    {
        std::vector<EntryPtr> entries;
        std::vector<Look> looks;         // one for each entry
        std::vector<EntryPtr> replaced;  // one for each entry: whose place it takes, or null
    };

    // EngineHandOver.cpp
    bool HandOver(const std::vector<TaskPtr>& tasks, const std::string* stored_guid);
    bool Admit(const std::vector<TaskPtr>& tasks, const std::string* stored_guid, Batch& batch);
    bool FindReplaced(const std::string& guid, EntryPtr& replaced);
    EntryPtr AdmitOne(const TaskPtr& task, std::string guid);
    static Look LookAt(TaskEntry& entry);
    Changes Register(const Batch& batch);
    void RegisterOne(TaskEntry& entry, const Look& look, const TaskEntry* replaced);
    void MakeKnown(const EntryPtr& entry);
    bool Enqueue(const Batch& batch);

    // Engine.cpp
    bool IsIdle() const { return waiting_.empty() && running_ == 0 && leaving_ == 0 && entering_ == 0; }
    bool ChangeState(TaskEntry& entry, ZellTaskKit::DownloadState next,
                     const Zell::Base::Error::ErrorCode& error);
    bool IsEvidence(TaskEntry& entry);
    HeldRequests TakeHeld(TaskEntry& entry, ZellTaskKit::DownloadState reported);
    void OnReport(TaskEntry& entry, const ZellTaskKit::CTaskCallbackParam& report);
    std::string TextOf(const Zell::Base::Error::ErrorCode& error);
    // The record's text if it has changed; null if not. Of the thread that runs the task only.
    static ResumeTextPtr NewResumeText(TaskEntry& entry);
    void KeepResumeText(TaskEntry& entry);
    void KeepNowAndThen(TaskEntry& entry);
    void Keep(Changes changes);
    std::shared_ptr<TaskStore> Store();

    // EngineRequests.cpp
    EntryPtr TakeOutOfQueue(const EntryPtr& entry);
    void ReportLeaving(const EntryPtr& entry, ZellTaskKit::DownloadState state);
    std::vector<EntryPtr> AskAllToStop();
    void ForgetAll();
    void DropDeletedFolder(TaskEntry& entry);
    bool DeleteStored(const EntryPtr& entry, FolderFate folder);

    // EngineList.cpp
    bool ListSome(std::uint64_t& next_place, std::vector<TaskView>& views);
    void AddStored(StoredTask task);
    void RemoveEntries(const std::vector<EntryPtr>& going);
    void Forget(const EntryPtr& entry);

    // EngineWorkers.cpp
    bool StartWorkers();
    void WorkerMain();
    EntryPtr NextTask();
    void RunTask(TaskEntry& entry);
    void FailRun(TaskEntry& entry, const char* what);
    void KeepEnd(TaskEntry& entry);
    void Finish(TaskEntry& entry);

    std::mutex mutex_;
    std::condition_variable work_;     // for workers: something may be run, or the engine goes down
    std::condition_variable settled_;  // for waiters: idle, or the life has changed
    Life life_ = Life::Down;
    int limit_ = kFirstLimit;
    std::size_t entering_ = 0;  // hand-overs under way; Unit waits for them
    std::size_t running_ = 0;   // tasks in Starting or Running
    std::size_t leaving_ = 0;
    unsigned int last_number_ = 0;
    std::uint64_t last_place_ = 0;
    std::uint64_t last_order_ = 0;
    std::map<std::uint64_t, EntryPtr> waiting_;  // by queue order
    std::map<std::uint64_t, EntryPtr> list_;     // by place
    std::map<unsigned int, EntryPtr> living_;    // by number
    std::unordered_map<std::string, EntryPtr> by_guid_;
    std::unordered_map<const ZellTaskKit::CDownloadTaskBase*, EntryPtr> by_task_;
    FolderClaims claims_;
    std::shared_ptr<const TaskMap> snapshot_;  // null when living_ has changed since
    std::vector<std::thread> workers_;
    std::shared_ptr<IReportSink> sink_;
    std::shared_ptr<const TextCallback> text_callback_;
    std::shared_ptr<TaskStore> store_;
};

// Whether the calling thread is a worker in a task's run.
bool IsTaskThread();
// Whether it runs this one.
bool RunsHere(const TaskEntry& entry);
// Calls into a task or an observer, whose exceptions end here with a line at level 5.
void CallGuarded(const char* what, const std::function<void()>& call);
// As of a task that only the store knows.
TaskView ViewOf(const StoredTask& task);
// Milliseconds since 1970.
long long WallClock();

}  // namespace FetchyardLogical::details
