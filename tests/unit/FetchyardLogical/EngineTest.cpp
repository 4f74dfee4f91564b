#include "FakeTask.h"
#include "ZellBase/Error.h"
#include "ZellBaseHost/LogHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <thread>

using namespace FetchyardLogical;
using namespace FetchyardLogical::testing;
using namespace ZellTaskKit;
using Zell::Base::Error::ErrorCode;
using Zell::Base::Error::GetLastError;
using Zell::Base::Error::SetLastError;

namespace {

using States = std::vector<int>;

// How many tasks are in Exec at once.
class Crowd
{
public:
    // Waits until as many are inside as the test wants to see.
    void Enter(int wanted)
    {
        std::unique_lock<std::mutex> lock(mutex_);
        most_ = std::max(most_, ++inside_);
        changed_.notify_all();
        changed_.wait(lock, [&] { return most_ >= wanted; });
    }
    void Leave()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        --inside_;
    }
    int Most() const
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return most_;
    }

private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    int inside_ = 0;
    int most_ = 0;
};

std::vector<std::shared_ptr<FakeTask>> MakeCrowd(Crowd& crowd, int tasks, int wanted)
{
    std::vector<std::shared_ptr<FakeTask>> made;
    for (int i = 0; i < tasks; ++i)
        made.push_back(MakeTask([&crowd, wanted](FakeTask& task) {
            task.Report(Downloading);
            crowd.Enter(wanted);
            crowd.Leave();
            task.Report(Finished);
        }));
    return made;
}

std::shared_ptr<FakeTask> MakeThrowing(DownloadState start, DownloadState record_state = Downloading)
{
    return MakeTask(
        [start](FakeTask& task) {
            if (start != Unstarted)
                task.Report(start);
            throw std::runtime_error("thrown by the test");
        },
        record_state);
}

}  // namespace

TEST(Engine, ATaskRunsAndItsStatesReachTheSink)
{
    EngineRig rig;
    const auto task = MakeQuickTask();
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(task), (States{1, 4}));
    EXPECT_EQ(task->runs, 1);
}

TEST(Engine, TasksStartInTheOrderOfHandOver)
{
    EngineRig rig;
    rig->SetLimit(1);
    std::vector<std::shared_ptr<FakeTask>> tasks;
    std::vector<std::string> guids;
    for (int i = 0; i < 200; ++i) {
        tasks.push_back(MakeQuickTask());
        guids.push_back(tasks.back()->GetGuid());
    }
    ASSERT_TRUE(rig.Add({tasks.begin(), tasks.begin() + 100}));
    ASSERT_TRUE(rig.Add({tasks.begin() + 100, tasks.end()}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.Log().GuidsWithState(Downloading), guids);
}

TEST(Engine, FiveTasksRunAtOnceBeforeALimitIsSet)
{
    EngineRig rig;
    Crowd crowd;
    ASSERT_TRUE(rig.Add(MakeCrowd(crowd, 40, 5)));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(crowd.Most(), 5);
}

TEST(Engine, ARaisedLimitStartsWaitingTasksAtOnce)
{
    EngineRig rig;
    rig->SetLimit(1);
    Crowd crowd;
    ASSERT_TRUE(rig.Add(MakeCrowd(crowd, 12, 8)));
    rig->SetLimit(8);
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(crowd.Most(), 8);
}

TEST(Engine, ALoweredLimitEndsNoRunningTaskAndHoldsTheNext)
{
    EngineRig rig;
    rig->SetLimit(3);
    Latch go;
    Crowd first;
    std::vector<std::shared_ptr<FakeTask>> running;
    for (int i = 0; i < 3; ++i)
        running.push_back(MakeTask([&](FakeTask& task) {
            task.Report(Downloading);
            first.Enter(3);
            EXPECT_TRUE(go.Wait());
            task.Report(Finished);
        }));
    ASSERT_TRUE(rig.Add(running));
    first.Enter(4);  // all three are in
    rig->SetLimit(1);
    Crowd second;
    const auto later = MakeCrowd(second, 30, 1);
    ASSERT_TRUE(rig.Add(later));
    go.Open();
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(second.Most(), 1);
    for (const auto& task : running)
        EXPECT_EQ(rig.StatesOf(task), (States{1, 4}));
}

TEST(Engine, ALimitBelowOneCountsAsOne)
{
    EngineRig rig;
    rig->SetLimit(-3);
    Crowd crowd;
    ASSERT_TRUE(rig.Add(MakeCrowd(crowd, 10, 1)));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(crowd.Most(), 1);
}

TEST(Engine, TheLastErrorIsClearedBeforeEachExec)
{
    EngineRig rig;
    rig->SetLimit(1);
    const auto first = MakeTask([](FakeTask& task) {
        task.Report(Downloading);
        SetLastError(ErrorCode(2, 20, 3605));
        task.Report(Failed);
    });
    const auto second = MakeQuickTask();
    ASSERT_TRUE(rig.Add({first, second}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.Log().LastErrorOf(*first), std::make_pair(20, 3605));
    EXPECT_EQ(rig.Log().LastErrorOf(*second), std::make_pair(0, 0));
}

TEST(Engine, ASensitiveTaskGetsTheAccountOnTheThreadOfItsExecBeforeIt)
{
    EngineRig rig;
    std::thread::id account_thread;
    std::thread::id exec_thread;
    ErrorCode error_in_exec(1, 1);
    const auto task = MakeTask([&](FakeTask& self) {
        EXPECT_EQ(self.accounts, 1);
        exec_thread = std::this_thread::get_id();
        error_in_exec = GetLastError();
    });
    task->on_account = [&](FakeTask& self) {
        EXPECT_EQ(self.runs, 0);
        account_thread = std::this_thread::get_id();
        SetLastError(ErrorCode(2, 20, 3));
    };
    task->GetDownloadTaskParam<CDownloadTaskParam>()->SetIsExportSensitiveInfo(true);
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(account_thread, exec_thread);
    EXPECT_NE(exec_thread, std::this_thread::get_id());
    EXPECT_EQ(error_in_exec.iFirstCode, 0);
    EXPECT_EQ(error_in_exec.iSecondCode, 0);
}

TEST(Engine, AnOrdinaryTaskIsNotGivenTheAccount)
{
    EngineRig rig;
    const auto task = MakeQuickTask();
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(task->accounts, 0);
}

TEST(Engine, AnExceptionOutOfExecIsReportedOnceAs5)
{
    EngineRig rig;
    const auto task = MakeThrowing(Downloading);
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(task), (States{1, 5}));
}

TEST(Engine, AnExceptionOfAnEvidenceExportIsReportedAs11)
{
    EngineRig rig;
    const auto started = MakeThrowing(Uploading);
    const auto by_record = MakeThrowing(Unstarted, Uploading);
    const auto plain_start = MakeThrowing(Downloading, Uploading);
    ASSERT_TRUE(rig.Add({started, by_record, plain_start}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(started), (States{7, 11}));
    EXPECT_EQ(rig.StatesOf(by_record), (States{11}));
    EXPECT_EQ(rig.StatesOf(plain_start), (States{1, 5}));
}

TEST(Engine, AnExceptionOfAnyTypeIsCaughtAndTheThreadGoesOn)
{
    EngineRig rig;
    rig->SetLimit(1);
    const auto number = MakeTask([](FakeTask& task) {
        task.Report(Downloading);
        throw 17;
    });
    const auto next = MakeQuickTask();
    ASSERT_TRUE(rig.Add({number, next}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(number), (States{1, 5}));
    EXPECT_EQ(rig.StatesOf(next), (States{1, 4}));
}

TEST(Engine, AnExceptionBehindAnEndStateIsNotReported)
{
    EngineRig rig;
    const auto task = MakeTask([](FakeTask& self) {
        self.Report(Downloading);
        self.Report(Finished);
        throw std::runtime_error("late");
    });
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(task), (States{1, 4}));
}

TEST(Engine, AnExceptionOutOfTheAccountCallFailsTheTaskWithoutExec)
{
    EngineRig rig;
    const auto task = MakeQuickTask();
    task->on_account = [](FakeTask&) { throw std::runtime_error("no account"); };
    task->GetDownloadTaskParam<CDownloadTaskParam>()->SetIsExportSensitiveInfo(true);
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(task), (States{5}));
    EXPECT_EQ(task->runs, 0);
}

TEST(Engine, AnExceptionOutOfAnObserverDoesNotReachTheTask)
{
    EngineRig rig;
    rig.Log().on_report = [](const CTaskCallbackParam&) { throw std::runtime_error("observer"); };
    const auto task = MakeQuickTask();
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(task), (States{1, 4}));
}

TEST(Engine, ATaskThatReportsAnEndIsRunningUntilExecReturns)
{
    EngineRig rig;
    Latch reported;
    Latch go;
    const auto task = MakeTask([&](FakeTask& self) {
        self.Report(Downloading);
        self.Report(Failed);
        self.Report(Failed);
        reported.Open();
        EXPECT_TRUE(go.Wait());
    });
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(reported.Wait());
    EXPECT_TRUE(rig.ViewOf(task).is_running);
    EXPECT_EQ(rig.ViewOf(task).state, Failed);
    EXPECT_FALSE(rig->WaitUntilIdle(std::chrono::milliseconds(0)));
    go.Open();
    ASSERT_TRUE(rig.Settle());
    EXPECT_FALSE(rig.ViewOf(task).is_running);
    EXPECT_EQ(rig.StatesOf(task), (States{1, 5, 5}));
}

TEST(Engine, ABatchIsTakenWholeOrNotAtAll)
{
    EngineRig rig;
    const auto task = MakeQuickTask();
    EXPECT_FALSE(rig.Add({}));
    EXPECT_FALSE(rig.Add({task, nullptr}));
    EXPECT_FALSE(rig.Add({task, task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(task->runs, 0);
    EXPECT_TRUE(rig->Snapshot()->empty());
}

TEST(Engine, ATaskThatWaitsOrRunsIsNotTakenAgain)
{
    EngineRig rig;
    rig->SetLimit(1);
    Latch started;
    Latch go;
    const auto running = MakeTask([&](FakeTask& task) {
        task.Report(Downloading);
        started.Open();
        EXPECT_TRUE(go.Wait());
        task.Report(Finished);
    });
    const auto waiting = MakeQuickTask();
    ASSERT_TRUE(rig.Add({running, waiting}));
    ASSERT_TRUE(started.Wait());
    EXPECT_FALSE(rig.Add({running}));
    EXPECT_FALSE(rig.Add({MakeQuickTask(), waiting}));
    EXPECT_EQ(rig->Snapshot()->size(), 2u);
    go.Open();
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(waiting), (States{1, 4}));
}

TEST(Engine, AnEndedTaskRunsAgainUnderItsNumber)
{
    EngineRig rig;
    const auto task = MakeQuickTask();
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    const unsigned int number = rig.ViewOf(task).number;
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(task->runs, 2);
    EXPECT_EQ(rig.StatesOf(task), (States{1, 4, 1, 4}));
    EXPECT_EQ(rig.ViewOf(task).number, number);
    EXPECT_EQ(rig->Snapshot()->size(), 1u);
}

TEST(Engine, ASnapshotHoldsEveryTaskByNumberAndNeverChanges)
{
    EngineRig rig;
    const auto first = MakeQuickTask();
    const auto second = MakeQuickTask();
    ASSERT_TRUE(rig.Add({first}));
    ASSERT_TRUE(rig.Settle());
    const auto before = rig->Snapshot();
    EXPECT_EQ(rig->Snapshot(), before);
    ASSERT_TRUE(rig.Add({second}));
    const auto after = rig->Snapshot();
    ASSERT_EQ(before->size(), 1u);
    EXPECT_EQ(before->begin()->second, first);
    ASSERT_EQ(after->size(), 2u);
    EXPECT_EQ(after->begin()->second, first);
    EXPECT_EQ(after->rbegin()->second, second);
    ASSERT_TRUE(rig.Settle());
}

TEST(Engine, TheListShowsWhatAHostWantsToKnow)
{
    EngineRig rig;
    rig->SetLimit(1);
    rig->SetTextCallback(
        [](const ErrorCode& error) { return "text of " + std::to_string(error.iSecondCode); });
    Latch started;
    Latch go;
    const auto failing = MakeTask([&](FakeTask& task) {
        task.Report(Downloading);
        details::Engine::CountPage();
        details::Engine::CountPage();
        started.Open();
        EXPECT_TRUE(go.Wait());
        SetLastError(ErrorCode(2, 20, 3219));
        task.Report(Failed);
    });
    failing->GetDownloadTaskParam<CDownloadTaskParam>()->SetVal_str_name("report");
    failing->GetDownloadTaskParam<CDownloadTaskParam>()->SetVal_str_file_path("/exports/");
    const auto waiting = MakeQuickTask();
    ASSERT_TRUE(rig.Add({failing, waiting}));
    ASSERT_TRUE(started.Wait());
    const TaskView running = rig.ViewOf(failing);
    EXPECT_EQ(running.number, 1u);
    EXPECT_EQ(running.name, "report");
    EXPECT_EQ(running.folder, "/exports/");
    EXPECT_EQ(running.state, Downloading);
    EXPECT_TRUE(running.is_running);
    EXPECT_FALSE(running.is_waiting);
    EXPECT_EQ(running.pages, 2u);
    EXPECT_EQ(running.error_text, "");
    EXPECT_TRUE(rig.ViewOf(waiting).is_waiting);
    EXPECT_FALSE(rig.ViewOf(waiting).is_running);
    EXPECT_EQ(rig.ViewOf(waiting).state, Unstarted);
    go.Open();
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.ViewOf(failing).error.iSecondCode, 3219);
    EXPECT_EQ(rig.ViewOf(failing).error_text, "text of 3219");
}

TEST(Engine, ViewTellsWhatAnAccountHasLeftOnceTheErrorValuesAreInUse)
{
    EngineRig rig;
    const auto refused = MakeTask([](FakeTask& task) {
        task.SetErrorParam({{"RemainingLoginNumber", "4"}, {"RemainingLoginType", "1"}});
        task.SetErrorParamState(task.runs > 1);
        task.Report(Failed);
    });
    ASSERT_TRUE(rig.Add({refused}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.ViewOf(refused).remaining_login_count, "");
    ASSERT_TRUE(rig.Add({refused}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.ViewOf(refused).remaining_login_count, "4");
    EXPECT_EQ(rig.ViewOf(refused).remaining_login_type, "1");
}

TEST(Engine, PagesAreCountedForEachRun)
{
    EngineRig rig;
    const auto task = MakeTask([](FakeTask&) { details::Engine::CountPage(); });
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.ViewOf(task).pages, 1u);
    details::Engine::CountPage();  // on no task's thread: counted for none
    EXPECT_EQ(rig.ViewOf(task).pages, 1u);
}

TEST(Engine, ATaskWithoutARecordRuns)
{
    EngineRig rig;
    const auto task = std::make_shared<FakeTask>([](FakeTask& self) { self.Report(Failed); });
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(task), (States{5}));
}

TEST(Engine, BeforeInitAndAfterUnitNothingIsTaken)
{
    const auto engine = std::make_shared<details::Engine>();
    EXPECT_FALSE(engine->Add({MakeQuickTask()}));
    EXPECT_FALSE(engine->Unit());
    ASSERT_TRUE(engine->Init());
    EXPECT_TRUE(engine->Init());
    EXPECT_TRUE(engine->Unit());
    EXPECT_FALSE(engine->Unit());
    EXPECT_FALSE(engine->Add({MakeQuickTask()}));
}

TEST(Engine, ManySmallBatchesAllRun)
{
    EngineRig rig;
    std::vector<std::shared_ptr<FakeTask>> all;
    for (int batch = 0; batch < 100; ++batch) {
        std::vector<std::shared_ptr<FakeTask>> tasks;
        for (int i = 0; i < 20; ++i)
            tasks.push_back(MakeQuickTask());
        EXPECT_EQ(rig->Snapshot()->size(), all.size());
        ASSERT_TRUE(rig.Add(tasks));
        all.insert(all.end(), tasks.begin(), tasks.end());
    }
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.Log().GuidsWithState(Finished).size(), all.size());
}
