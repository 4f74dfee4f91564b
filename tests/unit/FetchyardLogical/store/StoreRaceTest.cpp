// Every operation of a host from many threads while tasks run on a store. What is wrong here shows under the
// thread sanitizer, as a run that never settles, or as a store that differs from the list.
#include "StoreRig.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

using namespace FetchyardLogical;
using namespace FetchyardLogical::testing;
using namespace ZellTaskKit;

namespace {

// Polls for a stop and for its deletion, as real tasks do, and hands its record back meanwhile.
class BusyTask : public FakeTask
{
public:
    BusyTask() : FakeTask([](FakeTask& self) { static_cast<BusyTask&>(self).Work(); })
    {
        on_stop = [](FakeTask& self) { static_cast<BusyTask&>(self).stop_ = true; };
        on_delete = [](FakeTask& self) { static_cast<BusyTask&>(self).delete_ = true; };
        record_ = std::make_shared<FakeRecord>([this] { return RecordText(1, std::to_string(++asked_)); });
        SetDownloadTaskParam(record_, false);
    }

private:
    void Work()
    {
        stop_ = false;
        delete_ = false;
        Report(Downloading);
        for (int i = 0; i < 20 && !stop_ && !delete_; ++i) {
            SetDownloadTaskParam(record_, false);
            std::this_thread::yield();
        }
        Report(delete_ ? Deleted : stop_ ? Stopped : Finished);
    }

    std::shared_ptr<CDownloadTaskParam> record_;
    int asked_ = 0;  // plain: the engine asks on one thread at a time
    std::atomic<bool> stop_{false};
    std::atomic<bool> delete_{false};
};

void Trouble(StoreRig& store, unsigned int seed, const std::atomic<bool>& done)
{
    std::mt19937 random(seed);
    while (!done) {
        const std::vector<TaskView> views = store->List();
        if (views.empty())
            continue;
        const std::string guid = views[random() % views.size()].guid;
        TaskView view;
        switch (random() % 16) {
            case 0:
            case 1:
                store->StopTask(guid);
                break;
            case 2:
                store->DeleteTask(guid, FolderFate::Remove);
                break;
            case 3:
                store->Remove(guid);
                break;
            case 4:
                store->ClearFinished();
                break;
            case 5:
                store->ResumeText(guid);
                break;
            case 6:
                store->AddInPlaceOf(guid, std::make_shared<BusyTask>());
                break;
            case 7:
                store->Find(guid, view);
                break;
            case 8:
                store->StoreTrouble();
                break;
            default:
                store->StartAgain(guid);
                break;
        }
    }
}

}  // namespace

TEST(StoreRace, AllOperationsMeetOverTwoHundredTasks)
{
    StoreRig store;
    for (int start = 0; start < 3; ++start) {
        std::atomic<bool> done{false};
        std::vector<std::thread> threads;
        for (unsigned int seed = 1; seed <= 4; ++seed)
            threads.emplace_back([&, seed] { Trouble(store, seed, done); });
        for (int batch = 0; batch < 20; ++batch) {
            std::vector<std::shared_ptr<FakeTask>> tasks;
            for (int i = 0; i < 10; ++i)
                tasks.push_back(std::make_shared<BusyTask>());
            ASSERT_TRUE(store.Rig().Add(tasks));
        }
        // The engine goes down and up in the middle of it, too.
        ASSERT_TRUE(store->Unit());
        ASSERT_TRUE(store->Init());
        ASSERT_TRUE(store.Rig().Add({std::make_shared<BusyTask>()}));
        done = true;
        for (std::thread& thread : threads)
            thread.join();
        ASSERT_TRUE(store.Rig().Settle());
        const std::vector<TaskView> before = store->List();
        store.Restart();
        const std::vector<TaskView> after = store->List();
        ASSERT_EQ(after.size(), before.size());
        for (std::size_t i = 0; i < after.size(); ++i) {
            EXPECT_EQ(after[i].guid, before[i].guid);
            EXPECT_EQ(after[i].state, before[i].state);
        }
    }
}

TEST(StoreRace, AStoreIsOpenedAndClosedWhileTheEngineComesAndGoes)
{
    StoreRig store;
    std::atomic<bool> done{false};
    std::thread other([&] {
        std::string message;
        while (!done) {
            store->CloseStore();
            store->OpenStore(store.Path(), message);
        }
    });
    for (int round = 0; round < 20; ++round) {
        ASSERT_TRUE(store->Unit());
        ASSERT_TRUE(store->Init());
        ASSERT_TRUE(store.Rig().Add({std::make_shared<BusyTask>()}));
    }
    done = true;
    other.join();
    EXPECT_TRUE(store.Rig().Settle());
}
