// Requests from many threads at every point of a task's life. What is wrong here shows under the thread
// sanitizer, as a run that never settles, or as a trace that the contract does not know.
#include "FakeTask.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

using namespace FetchyardLogical;
using namespace FetchyardLogical::testing;
using namespace ZellTaskKit;

namespace {

using States = std::vector<int>;

// Stops at one of a few points, as a real task polls its flag.
class PollingTask : public FakeTask
{
public:
    PollingTask() : FakeTask([](FakeTask& self) { static_cast<PollingTask&>(self).Work(); })
    {
        on_stop = [](FakeTask& self) { static_cast<PollingTask&>(self).stop_ = true; };
        SetDownloadTaskParam(std::make_shared<CDownloadTaskParam>(), false);
    }

private:
    void Work()
    {
        stop_ = false;
        Report(Downloading);
        for (int i = 0; i < 20 && !stop_; ++i)
            std::this_thread::yield();
        Report(stop_ ? Stopped : Finished);
    }

    std::atomic<bool> stop_{false};
};

bool IsGoodTrace(const States& states)
{
    return states == States{1, 4} || states == States{1, 6} || states == States{6} || states == States{200};
}

std::vector<std::shared_ptr<FakeTask>> MakePolling(int count)
{
    std::vector<std::shared_ptr<FakeTask>> tasks;
    for (int i = 0; i < count; ++i)
        tasks.push_back(std::make_shared<PollingTask>());
    return tasks;
}

}  // namespace

TEST(EngineRace, StopsMeetTasksAtEveryPoint)
{
    EngineRig rig;
    const auto tasks = MakePolling(3000);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread)
        threads.emplace_back([&, thread] {
            for (std::size_t i = static_cast<std::size_t>(thread); i < tasks.size(); i += 4)
                rig->StopTask(tasks[i]->GetGuid());
        });
    threads.emplace_back([&] {
        for (int i = 0; i < 2000; ++i)
            rig->SetLimit(1 + i % 7);
    });
    for (std::size_t i = 0; i < tasks.size(); i += 10)
        ASSERT_TRUE(rig.Add({tasks.begin() + static_cast<std::ptrdiff_t>(i),
                             tasks.begin() + static_cast<std::ptrdiff_t>(i + 10)}));
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_TRUE(rig.Settle());
    for (const auto& task : tasks)
        EXPECT_TRUE(IsGoodTrace(rig.StatesOf(task))) << ::testing::PrintToString(rig.StatesOf(task));
}

TEST(EngineRace, ListsAndSnapshotsAreReadWhileTasksComeAndRun)
{
    EngineRig rig;
    std::atomic<bool> done{false};
    std::vector<std::thread> readers;
    for (int i = 0; i < 2; ++i)
        readers.emplace_back([&] {
            while (!done) {
                const auto snapshot = rig->Snapshot();
                const details::TaskMap copy = *snapshot;
                for (const auto& numbered : copy)
                    numbered.second->GetDownloadState();
                for (const TaskView& view : rig->List())
                    EXPECT_FALSE(view.is_waiting && view.is_running);
            }
        });
    for (int batch = 0; batch < 50; ++batch)
        ASSERT_TRUE(rig.Add(MakePolling(10)));
    ASSERT_TRUE(rig.Settle());
    done = true;
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(rig->Snapshot()->size(), 500u);
}

TEST(EngineRace, UnitAndInitMeetHandOversAndRequests)
{
    EngineRig rig;
    std::atomic<bool> done{false};
    std::vector<std::vector<std::shared_ptr<FakeTask>>> taken(2);
    std::vector<std::thread> threads;
    for (auto& own : taken)
        threads.emplace_back([&] {
            std::mt19937 random(4711);
            while (!done) {
                const auto tasks = MakePolling(5);
                if (!rig.Add(tasks))
                    continue;
                own.insert(own.end(), tasks.begin(), tasks.end());
                rig->StopTask(tasks[random() % 5]->GetGuid());
                rig->DeleteTask(tasks[4]->GetGuid());
            }
        });
    for (int i = 0; i < 300; ++i) {
        EXPECT_TRUE(rig->Unit());
        EXPECT_TRUE(rig->Init());
    }
    done = true;
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_TRUE(rig.Settle());
    for (const auto& own : taken)
        for (const auto& task : own)
            EXPECT_LE(task->runs, 1);
}

TEST(EngineRace, EndedTasksAreHandedOverAgainWhileTheyAreStopped)
{
    EngineRig rig;
    const auto tasks = MakePolling(8);
    std::atomic<bool> done{false};
    std::thread stopper([&] {
        while (!done)
            for (const auto& task : tasks)
                rig->StopTask(task->GetGuid());
    });
    int handed_over = 0;
    for (int round = 0; round < 2000; ++round)
        for (const auto& task : tasks)
            handed_over += rig.Add({task}) ? 1 : 0;
    done = true;
    stopper.join();
    ASSERT_TRUE(rig.Settle());
    EXPECT_GE(handed_over, 8);
    std::size_t ends = 0;
    for (const int state : {4, 6})
        ends += rig.Log().GuidsWithState(state).size();
    EXPECT_EQ(ends, static_cast<std::size_t>(handed_over));
}
