// What the engine keeps of its tasks, and what a later start of it finds.
#include "StoreRig.h"
#include "ZellBase/Error.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <stdexcept>
#include <thread>

using namespace FetchyardLogical;
using namespace FetchyardLogical::testing;
using namespace ZellTaskKit;
using Zell::Base::Error::ErrorCode;
using Zell::Base::Error::SetLastError;

namespace {

using Guids = std::vector<std::string>;

void Succeed(FakeTask& task)
{
    task.Report(Downloading);
    task.Report(Finished);
}

Guids GuidsOf(const std::vector<TaskView>& views)
{
    Guids guids;
    for (const TaskView& view : views)
        guids.push_back(view.guid);
    return guids;
}

// Reports its start and waits until the test lets it go on.
struct Held
{
    explicit Held(const std::string& name = "Held", const std::string& folder = "")
        : task(MakeRecorded(
              [this](FakeTask& self) {
                  self.Report(Downloading);
                  started.Open();
                  EXPECT_TRUE(go.Wait());
                  self.Report(end);
              },
              name, folder))
    {
    }

    Latch started;
    Latch go;
    DownloadState end = Finished;
    const std::shared_ptr<FakeTask> task;
};

}  // namespace

TEST(Store, WhatATaskWasIsFoundAfterARestart)
{
    StoreRig store;
    store->SetTextCallback(
        [](const ErrorCode& error) { return "code " + std::to_string(error.iSecondCode); });
    const auto task = MakeRecorded(
        [](FakeTask& self) {
            self.Report(Downloading);
            SetLastError(ErrorCode(2, 20, 3605));
            self.Report(Failed);
        },
        "Alarms of May", "/exports/May/", 3);
    const long long before = details::WallClock();
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
    store.Restart();
    EXPECT_EQ(store.Message(), "");
    const std::vector<TaskView> list = store->List();
    ASSERT_EQ(list.size(), 1u);
    const TaskView& view = list[0];
    EXPECT_EQ(view.guid, task->GetGuid());
    EXPECT_EQ(view.plugin_id, "fetchyard.c");
    EXPECT_EQ(view.name, "Alarms of May");
    EXPECT_EQ(view.folder, "/exports/May/");
    EXPECT_EQ(view.state, Failed);
    EXPECT_EQ(view.error.iFirstCode, 20);
    EXPECT_EQ(view.error.iSecondCode, 3605);
    EXPECT_EQ(view.error_text, "code 3605");
    EXPECT_EQ(view.record_kind, RecordKind::PersonPictures);
    EXPECT_TRUE(view.is_stored_only);
    EXPECT_FALSE(view.is_interrupted);
    EXPECT_EQ(view.number, 0u);
    EXPECT_GE(view.handed_over, before);
    EXPECT_GE(view.started, view.handed_over);
    EXPECT_GE(view.ended, view.started);
    EXPECT_LE(view.ended, details::WallClock());
    EXPECT_EQ(store->ResumeText(view.guid), RecordText(3));
}

TEST(Store, ASimpleDownloadIsListedAndHasNoRecord)
{
    StoreRig store;
    const auto task = MakeQuickTask();
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
    store.Restart();
    const TaskView view = store.View(task->GetGuid());
    EXPECT_EQ(view.record_kind, RecordKind::None);
    EXPECT_EQ(store->ResumeText(view.guid), "");
}

TEST(Store, ARecordOfAKindThatIsNotKnownIsKept)
{
    StoreRig store;
    const auto task = MakeRecorded(&Succeed, "Later", "", 4711);
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
    store.Restart();
    EXPECT_EQ(store.View(task->GetGuid()).record_kind, RecordKind::Unknown);
    EXPECT_EQ(store->ResumeText(task->GetGuid()), RecordText(4711));
}

TEST(Store, WhatAKillLeavesOfWaitingAndRunningTasksIsInterrupted)
{
    StoreRig store;
    store->SetLimit(1);
    Held running;
    const auto waiting = MakeRecorded(&Succeed, "Waiting");
    const auto done = MakeRecorded(&Succeed, "Done");
    ASSERT_TRUE(store.Rig().Add({done}));
    ASSERT_TRUE(store.Rig().Settle());
    ASSERT_TRUE(store.Rig().Add({running.task, waiting}));
    ASSERT_TRUE(running.started.Wait());
    const std::string copy = store.CopyOfFiles();
    running.go.Open();
    ASSERT_TRUE(store.Rig().Settle());

    std::string message;
    EngineRig later(copy, message);
    EXPECT_EQ(message, "");
    const std::vector<TaskView> list = later->List();
    ASSERT_EQ(GuidsOf(list), (Guids{done->GetGuid(), running.task->GetGuid(), waiting->GetGuid()}));
    EXPECT_FALSE(list[0].is_interrupted);
    EXPECT_TRUE(list[1].is_interrupted);
    EXPECT_EQ(list[1].state, Downloading);
    EXPECT_TRUE(list[2].is_interrupted);
    EXPECT_EQ(list[2].state, Unstarted);
    EXPECT_LT(list[1].queue_order, list[2].queue_order);
}

TEST(Store, WhatAnObserverHearsIsWithTheSystemByThen)
{
    StoreRig store;
    std::vector<int> found;
    store.Rig().Log().on_report = [&](const CTaskCallbackParam& report) {
        // The group is not in the database yet: what tells is the journal.
        const Found later = OpenAndLook(store.CopyOfFiles());
        const auto task = later.tasks.find(report.GetVal_task_guid());
        found.push_back(task == later.tasks.end() ? -1 : task->second.state);
    };
    const auto task = MakeRecorded([](FakeTask& self) {
        self.Report(Uploading);
        self.Report(TranscodingBegin);
        self.Report(TranscodingEnd);
        self.Report(UploadFinished);
    });
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_EQ(found, (std::vector<int>{7, 13, 14, 10}));
}

TEST(Store, ATaskIsKeptWhenItsHandOverReturns)
{
    StoreRig store;
    store->SetLimit(1);
    Held first;
    ASSERT_TRUE(store.Rig().Add({first.task}));
    ASSERT_TRUE(first.started.Wait());
    const auto task = MakeRecorded(&Succeed, "Queued");
    ASSERT_TRUE(store.Rig().Add({task}));
    const Found found = OpenAndLook(store.CopyOfFiles());
    ASSERT_EQ(found.tasks.count(task->GetGuid()), 1u);
    EXPECT_EQ(found.texts.at(task->GetGuid()), RecordText(1));
    first.go.Open();
    ASSERT_TRUE(store.Rig().Settle());
}

TEST(Store, ARecordIsAskedForWhereTheTaskIsHandedOverAndThenWhereItRuns)
{
    StoreRig store;
    std::vector<std::thread::id> asked;
    std::thread::id exec_thread;
    auto task = std::make_shared<FakeTask>([&](FakeTask& self) {
        exec_thread = std::this_thread::get_id();
        self.Report(Downloading);
        self.Report(Finished);
    });
    task->SetDownloadTaskParam(std::make_shared<FakeRecord>([&] {
                                   asked.push_back(std::this_thread::get_id());
                                   return RecordText(1, std::to_string(asked.size()));
                               }),
                               false);
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
    // At the hand-over, at both states, and once more behind Exec.
    EXPECT_EQ(asked, (std::vector<std::thread::id>{std::this_thread::get_id(), exec_thread, exec_thread,
                                                   exec_thread}));
    store.Restart();
    EXPECT_EQ(store->ResumeText(task->GetGuid()), RecordText(1, "4"));
}

TEST(Store, ATaskThatIsTakenOutOfTheQueueIsNotAskedForItsRecord)
{
    StoreRig store;
    store->SetLimit(1);
    Held first;
    int asked = 0;
    auto task = std::make_shared<FakeTask>([](FakeTask&) {});
    task->SetDownloadTaskParam(std::make_shared<FakeRecord>([&asked] {
                                   ++asked;
                                   return RecordText(1);
                               }),
                               false);
    ASSERT_TRUE(store.Rig().Add({first.task, task}));
    ASSERT_TRUE(first.started.Wait());
    EXPECT_TRUE(store->StopTask(task->GetGuid()));
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(store.View(task->GetGuid()).state, Stopped);
    EXPECT_GT(store.View(task->GetGuid()).ended, 0);
    first.go.Open();
    ASSERT_TRUE(store.Rig().Settle());
}

TEST(Store, RecordsThatAreHandedBackAndPagesAreWrittenOnceASecondAtMost)
{
    using Clock = std::chrono::steady_clock;
    StoreRig store;
    int asked = 0;
    auto record = std::make_shared<FakeRecord>([&asked] {
        ++asked;
        return RecordText(1, std::to_string(asked));
    });
    Clock::duration took{};
    int asked_by_then = 0;
    auto task = std::make_shared<FakeTask>([&](FakeTask& self) {
        self.Report(Downloading);
        const Clock::time_point began = Clock::now();
        const int before = asked;
        // As long as it takes until one of the two kinds was due.
        while (asked == before) {
            self.SetDownloadTaskParam(record, false);
            details::Engine::CountPage();
        }
        took = Clock::now() - began;
        asked_by_then = asked - before;
        for (int i = 0; i < 100; ++i)
            details::Engine::CountPage();
        self.Report(Finished);
    });
    task->SetDownloadTaskParam(record, false);
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_EQ(asked_by_then, 1);
    EXPECT_GE(took, std::chrono::milliseconds(900));
    // Hand-over, two states, behind Exec, and the one that was due; a slow machine may see one more.
    EXPECT_GE(asked, 5);
    EXPECT_LE(asked, 6);
}

TEST(Store, ARecordThatIsHandedBackOnAnotherThreadIsNotRead)
{
    StoreRig store;
    int asked = 0;
    auto record = std::make_shared<FakeRecord>([&asked] {
        ++asked;
        return RecordText(1);
    });
    auto task = std::make_shared<FakeTask>([&](FakeTask& self) {
        self.Report(Downloading);
        const int before = asked;
        std::thread other([&] { self.SetDownloadTaskParam(record, false); });
        other.join();
        EXPECT_EQ(asked, before);
        self.Report(Finished);
    });
    task->SetDownloadTaskParam(record, false);
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
}

TEST(Store, ARecordThatChangesBehindTheLastReportIsKept)
{
    StoreRig store;
    std::string content = "page 1";
    auto task = std::make_shared<FakeTask>([&](FakeTask& self) {
        self.Report(Downloading);
        self.Report(Failed);
        content = "page 7";
    });
    task->SetDownloadTaskParam(std::make_shared<FakeRecord>([&] { return RecordText(1, content); }), false);
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_EQ(store->ResumeText(task->GetGuid()), RecordText(1, "page 7"));
    store.Restart();
    EXPECT_EQ(store->ResumeText(task->GetGuid()), RecordText(1, "page 7"));
}

TEST(Store, ARecordThatThrowsLeavesTheLastText)
{
    StoreRig store;
    int asked = 0;
    auto task = std::make_shared<FakeTask>(&Succeed);
    task->SetDownloadTaskParam(std::make_shared<FakeRecord>([&]() -> std::string {
                                   if (++asked > 1)
                                       throw std::runtime_error("thrown by the test");
                                   return RecordText(1, "first");
                               }),
                               false);
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_EQ(store.Rig().StatesOf(task), (std::vector<int>{1, 4}));
    store.Restart();
    EXPECT_EQ(store->ResumeText(task->GetGuid()), RecordText(1, "first"));
}

TEST(Store, AResumedTaskTakesThePlaceAndTheNameOfWhatItCameFrom)
{
    StoreRig store;
    const auto first = MakeRecorded(&Succeed, "First", "/exports/first/");
    const auto middle = MakeRecorded(&Succeed, "Middle", "/exports/middle/");
    const auto last = MakeRecorded(&Succeed, "Last", "/exports/last/");
    ASSERT_TRUE(store.Rig().Add({first, middle, last}));
    ASSERT_TRUE(store.Rig().Settle());
    store.Restart();

    store->SetLimit(1);
    Held resumed("");  // no name and no folder in its record, as after ResumeDownloadTask
    ASSERT_TRUE(store->AddInPlaceOf(middle->GetGuid(), resumed.task));
    ASSERT_TRUE(resumed.started.Wait());
    const Guids expected{first->GetGuid(), resumed.task->GetGuid(), last->GetGuid()};
    EXPECT_EQ(GuidsOf(store->List()), expected);
    EXPECT_EQ(store.View(resumed.task->GetGuid()).name, "Middle");
    EXPECT_EQ(store.View(resumed.task->GetGuid()).folder, "/exports/middle/");
    TaskView gone;
    EXPECT_FALSE(store->Find(middle->GetGuid(), gone));
    const Found found = OpenAndLook(store.CopyOfFiles());
    EXPECT_EQ(found.guids, expected);
    EXPECT_EQ(found.tasks.at(resumed.task->GetGuid()).name, "Middle");
    resumed.go.Open();
    ASSERT_TRUE(store.Rig().Settle());
    store.Restart();
    EXPECT_EQ(GuidsOf(store->List()), expected);
    EXPECT_EQ(store.View(resumed.task->GetGuid()).state, Finished);
}

TEST(Store, APlaceIsTakenOnceAndOnlyOfAStoredTask)
{
    StoreRig store;
    const auto task = MakeRecorded(&Succeed);
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_FALSE(store->AddInPlaceOf(task->GetGuid(), MakeRecorded(&Succeed)));  // it lives
    store.Restart();
    EXPECT_FALSE(store->AddInPlaceOf("no such task", MakeRecorded(&Succeed)));
    EXPECT_FALSE(store->AddInPlaceOf(task->GetGuid(), nullptr));
    const auto resumed = MakeRecorded(&Succeed);
    EXPECT_TRUE(store->AddInPlaceOf(task->GetGuid(), resumed));
    EXPECT_FALSE(store->AddInPlaceOf(task->GetGuid(), MakeRecorded(&Succeed)));
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_EQ(GuidsOf(store->List()), Guids{resumed->GetGuid()});
}

TEST(Store, TasksThatWaitKeepTheirOrderOverRestarts)
{
    StoreRig store;
    store->SetLimit(1);
    Held blocker;
    const auto again = MakeRecorded(&Succeed, "again");
    ASSERT_TRUE(store.Rig().Add({again}));
    ASSERT_TRUE(store.Rig().Settle());
    ASSERT_TRUE(store.Rig().Add({blocker.task}));
    ASSERT_TRUE(blocker.started.Wait());
    const auto one = MakeRecorded(&Succeed, "one");
    ASSERT_TRUE(store.Rig().Add({one}));
    ASSERT_TRUE(store->StartAgain(again->GetGuid()));
    const Found found = OpenAndLook(store.CopyOfFiles());
    EXPECT_EQ(found.guids, (Guids{again->GetGuid(), blocker.task->GetGuid(), one->GetGuid()}));
    EXPECT_LT(found.tasks.at(one->GetGuid()).queue_order, found.tasks.at(again->GetGuid()).queue_order);
    blocker.go.Open();
    ASSERT_TRUE(store.Rig().Settle());
    store.Restart();
    const auto next = MakeRecorded(&Succeed, "next");
    ASSERT_TRUE(store.Rig().Add({next}));
    EXPECT_EQ(GuidsOf(store->List()),
              (Guids{again->GetGuid(), blocker.task->GetGuid(), one->GetGuid(), next->GetGuid()}));
    EXPECT_GT(store.View(next->GetGuid()).queue_order, store.View(again->GetGuid()).queue_order);
}

TEST(Store, AStartedAgainTaskKeepsItsGuidAndItsPlace)
{
    StoreRig store;
    const auto task = MakeRecorded([](FakeTask& self) {
        self.Report(Downloading);
        self.Report(self.runs == 1 ? Failed : Finished);
    });
    const auto other = MakeRecorded(&Succeed, "Other");
    ASSERT_TRUE(store.Rig().Add({task, other}));
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_TRUE(store->StartAgain(task->GetGuid()));
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_EQ(store.Rig().StatesOf(task), (std::vector<int>{1, 5, 1, 4}));
    store.Restart();
    EXPECT_EQ(GuidsOf(store->List()), (Guids{task->GetGuid(), other->GetGuid()}));
    EXPECT_EQ(store.View(task->GetGuid()).state, Finished);
    EXPECT_FALSE(store->StartAgain(task->GetGuid()));  // its object is gone
}

// Its object has outlived the engine, which knows it as a stored one.
TEST(Store, ATaskThatComesBackAfterTheEngineWentDownIsInTheListOnce)
{
    StoreRig store;
    const auto task = MakeRecorded(&Succeed);
    const auto other = MakeRecorded(&Succeed, "Other");
    ASSERT_TRUE(store.Rig().Add({task, other}));
    ASSERT_TRUE(store.Rig().Settle());
    ASSERT_TRUE(store->Unit());
    ASSERT_TRUE(store->Init());
    EXPECT_FALSE(store->AddInPlaceOf(other->GetGuid(), task));  // it has a place of its own
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_EQ(task->runs, 2);
    const Guids both{task->GetGuid(), other->GetGuid()};
    EXPECT_EQ(GuidsOf(store->List()), both);
    EXPECT_FALSE(store.View(task->GetGuid()).is_stored_only);
    store.Restart();
    EXPECT_EQ(GuidsOf(store->List()), both);
    EXPECT_TRUE(store->Remove(task->GetGuid()));
    EXPECT_EQ(GuidsOf(store->List()), Guids{other->GetGuid()});
}

TEST(Store, WhatIsRemovedStaysAway)
{
    StoreRig store;
    Held running;
    const auto done = MakeRecorded(&Succeed);
    ASSERT_TRUE(store.Rig().Add({done, running.task}));
    ASSERT_TRUE(running.started.Wait());
    const std::string running_guid = running.task->GetGuid();
    EXPECT_FALSE(store->Remove(running_guid));
    running.go.Open();
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_TRUE(store->Remove(done->GetGuid()));
    EXPECT_FALSE(store->Remove(done->GetGuid()));
    EXPECT_EQ(GuidsOf(store->List()), Guids{running_guid});
    EXPECT_EQ(store->Snapshot()->size(), 1u);
    done->Report(Failed);  // late, of a task that the engine does not know any more
    EXPECT_EQ(store.Rig().StatesOf(done), (std::vector<int>{1, 4}));
    store.Restart();
    EXPECT_EQ(GuidsOf(store->List()), Guids{running_guid});
    EXPECT_TRUE(store->Remove(running_guid));
    store.Restart();
    EXPECT_TRUE(store->List().empty());
}

TEST(Store, ClearingTakesOutWhatEndedWellOrWasDeleted)
{
    StoreRig store;
    Guids expected;
    for (const DownloadState end :
         {Finished, Failed, Stopped, UploadFinished, UploadFailed, UploadStopped, Deleted, TranscodingEnd}) {
        const auto task = MakeRecorded([end](FakeTask& self) {
            self.Report(Downloading);
            self.Report(end);
        });
        ASSERT_TRUE(store.Rig().Add({task}));
        if (end != Finished && end != UploadFinished && end != Deleted)
            expected.push_back(task->GetGuid());
    }
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_EQ(store->ClearFinished(), 3u);
    EXPECT_EQ(store->ClearFinished(), 0u);
    EXPECT_EQ(GuidsOf(store->List()), expected);
    store.Restart();
    EXPECT_EQ(GuidsOf(store->List()), expected);
    EXPECT_EQ(store->ClearFinished(), 0u);
}

TEST(Store, TheListStaysWhenTheEngineGoesDownAndUpAgain)
{
    StoreRig store;
    const auto task = MakeRecorded(&Succeed);
    ASSERT_TRUE(store.Rig().Add({task}));
    ASSERT_TRUE(store.Rig().Settle());
    ASSERT_TRUE(store->Unit());
    EXPECT_TRUE(store->Snapshot()->empty());
    EXPECT_EQ(GuidsOf(store->List()), Guids{task->GetGuid()});
    ASSERT_TRUE(store->Init());
    EXPECT_TRUE(store.View(task->GetGuid()).is_stored_only);
    const auto resumed = MakeRecorded(&Succeed);
    EXPECT_TRUE(store->AddInPlaceOf(task->GetGuid(), resumed));
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_EQ(GuidsOf(store->List()), Guids{resumed->GetGuid()});
}

TEST(Store, ItIsOpenedAndClosedOnlyWhileTheEngineIsDown)
{
    StoreRig store;
    std::string message;
    EXPECT_FALSE(store->OpenStore(store.Path(), message));
    EXPECT_EQ(message, "A task store is open already.");
    EXPECT_FALSE(store->CloseStore());
    ASSERT_TRUE(store->Unit());
    EXPECT_TRUE(store->CloseStore());
    EXPECT_TRUE(store->List().empty());
    ASSERT_TRUE(store->Init());
    EXPECT_FALSE(store->OpenStore(store.Path(), message));
    EXPECT_EQ(message, "The engine runs already.");
}

TEST(Store, ARequestFromInsideAnObserverIsTakenAndToldAfterwards)
{
    StoreRig store;
    store->SetLimit(1);
    const auto waiting = MakeRecorded(&Succeed, "Waiting");
    const auto doomed = MakeRecorded(&Succeed, "Doomed");
    const auto task = MakeRecorded(&Succeed, "Task");
    const std::map<std::string, std::string> names{
        {task->GetGuid(), "Task"}, {waiting->GetGuid(), "Waiting"}, {doomed->GetGuid(), "Doomed"}};
    std::vector<std::string> heard;
    bool inside = false;
    store.Rig().Log().on_report = [&](const CTaskCallbackParam& report) {
        EXPECT_FALSE(inside) << "an observer was called from inside its own call";
        inside = true;
        heard.push_back(names.at(report.GetVal_task_guid()) + " " + std::to_string(report.GetVal_state()));
        if (report.GetVal_state() == Downloading) {
            EXPECT_TRUE(store->StopTask(waiting->GetGuid()));
            EXPECT_TRUE(store->DeleteTask(doomed->GetGuid()));
            EXPECT_TRUE(store->Remove(waiting->GetGuid()));
            EXPECT_EQ(store->List().size(), 2u);
        }
        inside = false;
    };
    ASSERT_TRUE(store.Rig().Add({task, waiting, doomed}));
    ASSERT_TRUE(store.Rig().Settle());
    EXPECT_EQ(heard, (std::vector<std::string>{"Task 1", "Waiting 6", "Doomed 200", "Task 4"}));
}
