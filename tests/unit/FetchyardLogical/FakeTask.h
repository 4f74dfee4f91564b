#pragma once

#include "Engine/Engine.h"
#include "ZellTaskKit/DownloadTaskBase.h"

#include <condition_variable>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace FetchyardLogical::testing {

// A door that stays open once it has been opened.
class Latch
{
public:
    Latch() : future_(promise_.get_future().share()) {}
    void Open() { promise_.set_value(); }
    // False if it is still shut after a minute, which no test waits for unless something hangs.
    bool Wait() const { return future_.wait_for(std::chrono::minutes(1)) == std::future_status::ready; }

private:
    std::promise<void> promise_;
    std::shared_future<void> future_;
};

// A task whose Exec and Stop are the test's.
class FakeTask : public ZellTaskKit::CDownloadTaskBase
{
public:
    using Body = std::function<void(FakeTask&)>;

    explicit FakeTask(Body body);

    void Exec() override;
    bool Stop() override;
    bool Delete() override;
    ZellTaskKit::CDownloadProgress GetProgress() override;
    bool Suspend() override;
    bool SetAccountInforToRequest() override;

    void Report(ZellTaskKit::DownloadState state) { NotifyTaskState(state); }

    Body on_stop;
    Body on_delete;
    Body on_account;
    std::atomic<int> runs{0};
    std::atomic<int> stops{0};
    std::atomic<int> deletes{0};
    std::atomic<int> accounts{0};

private:
    const Body body_;
};

// With a record of its own, in state 1 unless said.
std::shared_ptr<FakeTask> MakeTask(FakeTask::Body body,
                                   ZellTaskKit::DownloadState record_state = ZellTaskKit::Downloading);
// Reports 1 and 4.
std::shared_ptr<FakeTask> MakeQuickTask();

// Collects the reports of all tasks in the order of their coming.
class ReportLog final : public details::IReportSink
{
public:
    void OnReports(const details::Reports& reports) override;

    // State by state, for one task.
    std::vector<int> StatesOf(ZellTaskKit::CDownloadTaskBase& task) const;
    std::pair<int, int> LastErrorOf(ZellTaskKit::CDownloadTaskBase& task) const;
    std::vector<std::string> GuidsWithState(int state) const;
    std::size_t Count() const;

    std::function<void(const ZellTaskKit::CTaskCallbackParam&)> on_report;

private:
    mutable std::mutex mutex_;
    details::Reports reports_;
    std::unordered_map<std::string, std::vector<std::size_t>> by_guid_;  // positions in reports_
};

// An engine of the test's own, up, with a log; taken down at the end.
class EngineRig
{
public:
    EngineRig();
    // On a store; message is what its opening said.
    EngineRig(const std::string& store, std::string& message);
    EngineRig(const EngineRig&) = delete;
    EngineRig& operator=(const EngineRig&) = delete;
    ~EngineRig();

    details::Engine* operator->() { return engine_.get(); }
    ReportLog& Log() { return *log_; }
    bool Add(const std::vector<std::shared_ptr<FakeTask>>& tasks);
    bool Settle();
    std::vector<int> StatesOf(const std::shared_ptr<FakeTask>& task) { return log_->StatesOf(*task); }
    TaskView ViewOf(const std::shared_ptr<FakeTask>& task);

private:
    std::shared_ptr<details::Engine> engine_;
    std::shared_ptr<ReportLog> log_;
};

}  // namespace FetchyardLogical::testing
