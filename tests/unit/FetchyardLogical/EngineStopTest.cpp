#include "FakeTask.h"
#include "ZellBase/Error.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

using namespace FetchyardLogical;
using namespace FetchyardLogical::testing;
using namespace ZellTaskKit;
using Zell::Base::Error::ErrorCode;

namespace {

using States = std::vector<int>;

// Runs until it is stopped, then reports the end given.
std::shared_ptr<FakeTask> MakeStoppable(Latch& started, Latch& stopped, DownloadState start = Downloading,
                                        DownloadState end = Stopped)
{
    auto task = MakeTask([&started, &stopped, start, end](FakeTask& self) {
        self.Report(start);
        started.Open();
        EXPECT_TRUE(stopped.Wait());
        self.Report(end);
    });
    task->on_stop = [&stopped](FakeTask& self) {
        if (self.stops == 1)
            stopped.Open();
    };
    return task;
}

}  // namespace

TEST(EngineStop, AWaitingTaskIsTakenOutOfTheQueueAndReportedAs6)
{
    EngineRig rig;
    rig->SetLimit(1);
    Latch started;
    Latch stopped;
    const auto running = MakeStoppable(started, stopped);
    const auto waiting = MakeQuickTask();
    const auto last = MakeQuickTask();
    ASSERT_TRUE(rig.Add({running, waiting, last}));
    ASSERT_TRUE(started.Wait());
    EXPECT_TRUE(rig->StopTask(waiting->GetGuid()));
    EXPECT_EQ(rig.StatesOf(waiting), (States{6}));
    EXPECT_FALSE(rig.ViewOf(waiting).is_waiting);
    EXPECT_FALSE(rig->StopTask(waiting->GetGuid()));
    EXPECT_TRUE(rig->StopTask(running->GetGuid()));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(waiting->runs, 0);
    EXPECT_EQ(waiting->stops, 0);
    EXPECT_EQ(rig.StatesOf(waiting), (States{6}));
    EXPECT_EQ(rig.StatesOf(last), (States{1, 4}));
}

TEST(EngineStop, AWaitingEvidenceExportIsReportedAs12)
{
    EngineRig rig;
    rig->SetLimit(1);
    Latch started;
    Latch stopped;
    const auto running = MakeStoppable(started, stopped, Uploading, UploadStopped);
    const auto waiting = MakeTask([](FakeTask&) {}, Uploading);
    ASSERT_TRUE(rig.Add({running, waiting}));
    ASSERT_TRUE(started.Wait());
    EXPECT_TRUE(rig->StopTask(waiting->GetGuid()));
    EXPECT_TRUE(rig->StopTask(running->GetGuid()));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(waiting), (States{12}));
    EXPECT_EQ(rig.StatesOf(running), (States{7, 12}));
}

TEST(EngineStop, ThatReportCarriesNoErrorAndLeavesTheCallersAlone)
{
    EngineRig rig;
    rig->SetLimit(1);
    Latch started;
    Latch stopped;
    const auto running = MakeStoppable(started, stopped);
    const auto waiting = MakeQuickTask();
    ASSERT_TRUE(rig.Add({running, waiting}));
    ASSERT_TRUE(started.Wait());
    Zell::Base::Error::SetLastError(ErrorCode(2, 20, 3605));
    EXPECT_TRUE(rig->StopTask(waiting->GetGuid()));
    EXPECT_EQ(Zell::Base::Error::GetLastError().iSecondCode, 3605);
    EXPECT_EQ(rig.Log().LastErrorOf(*waiting), std::make_pair(0, 0));
    EXPECT_TRUE(rig->StopTask(running->GetGuid()));
    ASSERT_TRUE(rig.Settle());
}

TEST(EngineStop, AStopBeforeTheStartStateIsHeldUntilItWasReported)
{
    EngineRig rig;
    Latch entered;
    Latch asked;
    const auto task = MakeTask([&](FakeTask& self) {
        entered.Open();
        EXPECT_TRUE(asked.Wait());
        EXPECT_EQ(self.stops, 0);
        self.Report(Downloading);
        EXPECT_EQ(self.stops, 1);
        self.Report(Stopped);
    });
    std::size_t reports_before_stop = 0;
    task->on_stop = [&](FakeTask&) { reports_before_stop = rig.Log().Count(); };
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(entered.Wait());
    EXPECT_TRUE(rig->StopTask(task->GetGuid()));
    EXPECT_TRUE(rig->StopTask(task->GetGuid()));
    asked.Open();
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(task->stops, 1);
    EXPECT_EQ(reports_before_stop, 1u);
    EXPECT_EQ(rig.StatesOf(task), (States{1, 6}));
}

TEST(EngineStop, AHeldStopIsDroppedWhenTheFirstReportIsAnEnd)
{
    EngineRig rig;
    Latch entered;
    Latch asked;
    const auto task = MakeTask([&](FakeTask& self) {
        if (self.runs == 2) {
            self.Report(Downloading);
            self.Report(Finished);
            return;
        }
        entered.Open();
        EXPECT_TRUE(asked.Wait());
        self.Report(Failed);
    });
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(entered.Wait());
    EXPECT_TRUE(rig->StopTask(task->GetGuid()));
    asked.Open();
    ASSERT_TRUE(rig.Settle());
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(task->stops, 0);
    EXPECT_EQ(rig.StatesOf(task), (States{5, 1, 4}));
}

TEST(EngineStop, ARunningTaskIsStoppedOnTheCallersThread)
{
    EngineRig rig;
    Latch started;
    Latch go;
    std::thread::id stop_thread;
    const auto task = MakeTask([&](FakeTask& self) {
        self.Report(Downloading);
        started.Open();
        EXPECT_TRUE(go.Wait());
        self.Report(Stopped);
    });
    task->on_stop = [&](FakeTask&) { stop_thread = std::this_thread::get_id(); };
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(started.Wait());
    EXPECT_TRUE(rig->StopTask(task->GetGuid()));
    EXPECT_EQ(stop_thread, std::this_thread::get_id());
    go.Open();
    ASSERT_TRUE(rig.Settle());
}

TEST(EngineStop, AStopMayReportFromTheCallersThread)
{
    EngineRig rig;
    Latch started;
    Latch go;
    const auto task = MakeTask([&](FakeTask& self) {
        self.Report(Downloading);
        started.Open();
        EXPECT_TRUE(go.Wait());
    });
    task->on_stop = [](FakeTask& self) { self.Report(Failed); };
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(started.Wait());
    EXPECT_TRUE(rig->StopTask(task->GetGuid()));
    EXPECT_EQ(rig.StatesOf(task), (States{1, 5}));
    go.Open();
    ASSERT_TRUE(rig.Settle());
}

TEST(EngineStop, AnExceptionOutOfStopStaysInTheEngine)
{
    EngineRig rig;
    Latch started;
    Latch go;
    const auto task = MakeTask([&](FakeTask& self) {
        self.Report(Downloading);
        started.Open();
        EXPECT_TRUE(go.Wait());
        self.Report(Finished);
    });
    task->on_stop = [](FakeTask&) { throw std::runtime_error("stop"); };
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(started.Wait());
    EXPECT_TRUE(rig->StopTask(task->GetGuid()));
    go.Open();
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(task), (States{1, 4}));
}

TEST(EngineStop, ATaskThatReportedItsEndAndStillWorksIsAsked)
{
    EngineRig rig;
    Latch reported;
    Latch stopped;
    const auto task = MakeTask([&](FakeTask& self) {
        self.Report(Downloading);
        self.Report(Failed);
        reported.Open();
        EXPECT_TRUE(stopped.Wait());
    });
    task->on_stop = [&](FakeTask&) { stopped.Open(); };
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(reported.Wait());
    EXPECT_TRUE(rig->StopTask(task->GetGuid()));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(task), (States{1, 5}));
}

TEST(EngineStop, AnEndedOrUnknownTaskCannotBeStopped)
{
    EngineRig rig;
    const auto task = MakeQuickTask();
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_FALSE(rig->StopTask(task->GetGuid()));
    EXPECT_FALSE(rig->StopTask("no such task"));
    EXPECT_FALSE(rig->DeleteTask("no such task"));
    EXPECT_EQ(task->stops, 0);
}

TEST(EngineStop, ADeletedWaitingTaskIsTakenOutAndReportedAs200)
{
    EngineRig rig;
    rig->SetLimit(1);
    Latch started;
    Latch stopped;
    const auto running = MakeStoppable(started, stopped);
    const auto waiting = MakeQuickTask();
    ASSERT_TRUE(rig.Add({running, waiting}));
    ASSERT_TRUE(started.Wait());
    EXPECT_TRUE(rig->DeleteTask(waiting->GetGuid()));
    EXPECT_EQ(waiting->deletes, 1);
    EXPECT_EQ(rig.StatesOf(waiting), (States{200}));
    EXPECT_TRUE(rig->StopTask(running->GetGuid()));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(waiting->runs, 0);
}

TEST(EngineStop, ADeleteBeforeTheStartStateIsHeldUntilItWasReported)
{
    EngineRig rig;
    Latch entered;
    Latch asked;
    const auto task = MakeTask([&](FakeTask& self) {
        entered.Open();
        EXPECT_TRUE(asked.Wait());
        EXPECT_EQ(self.deletes, 0);
        self.Report(Downloading);
        EXPECT_EQ(self.deletes, 1);
        self.Report(Deleted);
    });
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(entered.Wait());
    EXPECT_TRUE(rig->DeleteTask(task->GetGuid()));
    asked.Open();
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(task), (States{1, 200}));
}

TEST(EngineStop, ARunningOrEndedTaskIsDeletedByItself)
{
    EngineRig rig;
    Latch started;
    Latch deleted;
    const auto task = MakeTask([&](FakeTask& self) {
        self.Report(Downloading);
        started.Open();
        EXPECT_TRUE(deleted.Wait());
        self.Report(Deleted);
    });
    task->on_delete = [&](FakeTask& self) {
        if (self.deletes == 1)
            deleted.Open();
    };
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(started.Wait());
    EXPECT_TRUE(rig->DeleteTask(task->GetGuid()));
    ASSERT_TRUE(rig.Settle());
    EXPECT_TRUE(rig->DeleteTask(task->GetGuid()));
    EXPECT_EQ(task->deletes, 2);
    EXPECT_EQ(rig.StatesOf(task), (States{1, 200}));
}

TEST(EngineUnit, WaitingTasksAreReportedAndRunningOnesStoppedAndWaitedFor)
{
    EngineRig rig;
    rig->SetLimit(2);
    Latch started[2];
    Latch stopped[2];
    const auto first = MakeStoppable(started[0], stopped[0]);
    const auto second = MakeStoppable(started[1], stopped[1], Uploading, UploadStopped);
    const auto waiting = MakeQuickTask();
    const auto evidence = MakeTask([](FakeTask&) {}, Uploading);
    ASSERT_TRUE(rig.Add({first, second, waiting, evidence}));
    ASSERT_TRUE(started[0].Wait());
    ASSERT_TRUE(started[1].Wait());
    EXPECT_TRUE(rig->Unit());
    EXPECT_EQ(rig.StatesOf(first), (States{1, 6}));
    EXPECT_EQ(rig.StatesOf(second), (States{7, 12}));
    EXPECT_EQ(rig.StatesOf(waiting), (States{6}));
    EXPECT_EQ(rig.StatesOf(evidence), (States{12}));
    EXPECT_TRUE(rig->List().empty());
    EXPECT_TRUE(rig->Snapshot()->empty());
}

TEST(EngineUnit, ATaskThatCannotBeStoppedIsWaitedFor)
{
    EngineRig rig;
    Latch started;
    Latch asked;
    const auto task = MakeTask([&](FakeTask& self) {
        self.Report(Downloading);
        started.Open();
        EXPECT_TRUE(asked.Wait());
        self.Report(Finished);
    });
    task->on_stop = [&](FakeTask&) { asked.Open(); };
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(started.Wait());
    EXPECT_TRUE(rig->Unit());
    EXPECT_EQ(rig.StatesOf(task), (States{1, 4}));
}

TEST(EngineUnit, AStartingTaskIsStoppedOnceItHasReported)
{
    EngineRig rig;
    rig->SetLimit(1);
    Latch entered;
    Latch unit_begun;
    const auto task = MakeTask([&](FakeTask& self) {
        entered.Open();
        EXPECT_TRUE(unit_begun.Wait());
        self.Report(Downloading);
        self.Report(self.stops == 1 ? Stopped : Finished);
    });
    const auto waiting = MakeQuickTask();
    rig.Log().on_report = [&](const CTaskCallbackParam& report) {
        if (report.GetVal_task_guid() == waiting->GetGuid())
            unit_begun.Open();
    };
    ASSERT_TRUE(rig.Add({task, waiting}));
    ASSERT_TRUE(entered.Wait());
    EXPECT_TRUE(rig->Unit());
    EXPECT_EQ(rig.StatesOf(waiting), (States{6}));
    EXPECT_EQ(rig.StatesOf(task), (States{1, 6}));
}

TEST(EngineUnit, TheEngineForgetsItsTasksAndInitWorksAgain)
{
    EngineRig rig;
    auto task = MakeQuickTask();
    const std::weak_ptr<FakeTask> watched = task;
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    ASSERT_TRUE(rig->Unit());
    task.reset();
    EXPECT_TRUE(watched.expired());
    ASSERT_TRUE(rig->Init());
    const auto next = MakeQuickTask();
    ASSERT_TRUE(rig.Add({next}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig.StatesOf(next), (States{1, 4}));
}

TEST(EngineUnit, ATaskReportsToNobodyAfterIt)
{
    EngineRig rig;
    const auto task = MakeQuickTask();
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    ASSERT_TRUE(rig->Unit());
    task->Report(Failed);
    EXPECT_EQ(rig.StatesOf(task), (States{1, 4}));
}

TEST(EngineUnit, ATaskCannotTakeItsOwnEngineDown)
{
    EngineRig rig;
    bool taken_down = true;
    const auto task = MakeTask([&](FakeTask&) { taken_down = rig->Unit(); });
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_FALSE(taken_down);
}
