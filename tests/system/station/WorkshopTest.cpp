#include "station/Data/Database.h"
#include "station/Guid.h"
#include "station/Making/Workshop.h"

#include <gtest/gtest.h>
#include <QTemporaryDir>

#include <atomic>
#include <fstream>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using namespace Station;
namespace fs = std::filesystem;

namespace {

// A maker that works until it is told to end; it may outlive the test's own part.
class Blocker
{
public:
    WorkOrder Order() const
    {
        WorkOrder order;
        order.make = [state = state_](const fs::path& path, WorkProgress& progress) {
            std::ofstream(path) << "half";
            state->has_begun = true;
            while (!state->may_end && !progress.is_unwanted)
                std::this_thread::yield();
        };
        return order;
    }
    void WaitUntilBegun() const
    {
        while (!state_->has_begun)
            std::this_thread::yield();
    }
    void LetEnd() const { state_->may_end = true; }

private:
    struct State
    {
        std::atomic<bool> has_begun{false};
        std::atomic<bool> may_end{false};
    };
    const std::shared_ptr<State> state_ = std::make_shared<State>();
};

class StationWorkshop : public testing::Test
{
protected:
    static WorkOrder TextOrder(const std::string& text)
    {
        WorkOrder order;
        order.suffix = ".txt";
        order.make = [text](const fs::path& path, WorkProgress& progress) {
            std::ofstream(path) << text;
            progress.rows = 1;
        };
        return order;
    }
    std::string Made(WorkOrder order)
    {
        const std::string guid = workshop_.Take(std::move(order));
        workshop_.WaitUntilDone(guid);
        return guid;
    }
    WorkState Poll(const std::string& guid) { return workshop_.Poll(guid).value().state; }
    std::set<std::string> Files() const
    {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(path_))
            names.insert(entry.path().filename().string());
        return names;
    }

    QTemporaryDir folder_;
    const fs::path path_ = folder_.filePath("work").toStdString();
    Workshop workshop_{path_};
};

}  // namespace

TEST(StationGuid, IsOfItsFormAndNeverTheSame)
{
    std::set<std::string> guids;
    for (int i = 0; i < 1000; ++i) {
        guids.insert(NewGuid());
        EXPECT_TRUE(IsGuid(*guids.rbegin())) << *guids.rbegin();
    }
    EXPECT_EQ(guids.size(), 1000u);
    EXPECT_EQ((*guids.begin())[14], '4');
    for (const char* none : {"", "..", "0f8fad5b-d9cb-469f-a165-70867728950",
                             "0f8fad5b-d9cb-469f-a165-70867728950e0", "0F8FAD5B-D9CB-469F-A165-70867728950E",
                             "0f8fad5b/d9cb-469f-a165-70867728950e", "0f8fad5bxd9cb-469f-a165-70867728950e"})
        EXPECT_FALSE(IsGuid(none)) << none;
}

TEST_F(StationWorkshop, WorkHasItsNameOnlyWhenItIsWhole)
{
    const Blocker blocker;
    const std::string guid = workshop_.Take(blocker.Order());
    blocker.WaitUntilBegun();
    EXPECT_EQ(Files(), std::set<std::string>{guid + ".part"});
    EXPECT_EQ(Poll(guid), WorkState::Working);
    EXPECT_FALSE(workshop_.Find(guid));
    blocker.LetEnd();
    workshop_.WaitUntilDone(guid);
    EXPECT_EQ(Files(), std::set<std::string>{guid});
    EXPECT_EQ(workshop_.Find(guid), path_ / guid);
}

TEST_F(StationWorkshop, WorkIsMadeInTheOrderOfTheOrders)
{
    std::vector<int> order;
    const Blocker blocker;
    workshop_.Take(blocker.Order());
    std::string last;
    for (int i = 1; i <= 3; ++i) {
        WorkOrder one;
        one.make = [&order, i](const fs::path& path, WorkProgress&) {
            std::ofstream(path) << i;
            order.push_back(i);
        };
        last = workshop_.Take(one);
    }
    blocker.LetEnd();
    workshop_.WaitUntilDone(last);
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST_F(StationWorkshop, PollsTellOfRowsAndHandTheNoteBack)
{
    WorkOrder order = TextOrder("x");
    order.note = "from the order";
    order.ready_after_polls = 2;
    const std::string guid = Made(order);
    const auto first = workshop_.Poll(guid);
    EXPECT_EQ(first->state, WorkState::Working);
    EXPECT_EQ(first->rows, 1);
    EXPECT_EQ(first->note, "from the order");
    EXPECT_EQ(Poll(guid), WorkState::Working);
    EXPECT_EQ(Poll(guid), WorkState::Ready);
    EXPECT_EQ(Poll(guid), WorkState::Ready);
}

TEST_F(StationWorkshop, PollsThatAreUsedUpDoNotMakeItReadyBeforeItIsMade)
{
    const Blocker blocker;
    WorkOrder order = blocker.Order();
    order.ready_after_polls = 1;
    const std::string guid = workshop_.Take(order);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(Poll(guid), WorkState::Working);
    blocker.LetEnd();
    workshop_.WaitUntilDone(guid);
    EXPECT_EQ(Poll(guid), WorkState::Ready);
}

TEST_F(StationWorkshop, OrderedFailureComesAfterItsPollsAndNothingIsMade)
{
    WorkOrder order = TextOrder("x");
    order.fail_after_polls = 2;
    order.ready_after_polls = 0;
    const std::string guid = Made(order);
    EXPECT_EQ(Poll(guid), WorkState::Working);
    EXPECT_EQ(Poll(guid), WorkState::Working);
    EXPECT_EQ(Poll(guid), WorkState::Failed);
    EXPECT_FALSE(workshop_.Poll(guid)->failure.empty());
    EXPECT_TRUE(Files().empty());
}

TEST_F(StationWorkshop, FailureIsToldInItsWordsAndLeavesNothing)
{
    WorkOrder order;
    order.make = [](const fs::path& path, WorkProgress&) {
        std::ofstream(path) << "half";
        throw std::runtime_error("no room");
    };
    const std::string guid = Made(order);
    const auto report = workshop_.Poll(guid);
    EXPECT_EQ(report->state, WorkState::Failed);
    EXPECT_EQ(report->failure, "no room");
    EXPECT_TRUE(Files().empty());
    EXPECT_FALSE(workshop_.Find(guid));
    // The next one is made all the same.
    EXPECT_EQ(Poll(Made(TextOrder("x"))), WorkState::Ready);
}

TEST_F(StationWorkshop, WorkThatMadeNothingFails)
{
    WorkOrder order;
    order.make = [](const fs::path&, WorkProgress&) {};
    EXPECT_EQ(Poll(Made(order)), WorkState::Failed);
}

TEST_F(StationWorkshop, StopWhileItIsMadeLeavesNothingAndStaysStopped)
{
    const Blocker blocker;
    const std::string guid = workshop_.Take(blocker.Order());
    blocker.WaitUntilBegun();
    EXPECT_TRUE(workshop_.Stop(guid));
    EXPECT_TRUE(workshop_.Stop(guid));
    EXPECT_EQ(Poll(guid), WorkState::Stopped);
    Made(TextOrder("x"));
    EXPECT_EQ(Poll(guid), WorkState::Stopped);
    EXPECT_EQ(Files().size(), 1u);
}

TEST_F(StationWorkshop, StopOfMadeWorkRemovesItAndOfFailedWorkChangesNothing)
{
    const std::string guid = Made(TextOrder("x"));
    EXPECT_TRUE(workshop_.Stop(guid));
    EXPECT_TRUE(Files().empty());
    EXPECT_FALSE(workshop_.Find(guid));
    WorkOrder order;
    order.make = [](const fs::path&, WorkProgress&) { throw std::runtime_error("no"); };
    const std::string failed = Made(order);
    EXPECT_TRUE(workshop_.Stop(failed));
    EXPECT_EQ(Poll(failed), WorkState::Failed);
}

TEST_F(StationWorkshop, DropWhileItIsMadeLeavesNothing)
{
    const Blocker blocker;
    const std::string guid = workshop_.Take(blocker.Order());
    blocker.WaitUntilBegun();
    EXPECT_TRUE(workshop_.Drop(guid));
    EXPECT_FALSE(workshop_.Drop(guid));
    EXPECT_FALSE(workshop_.Poll(guid));
    EXPECT_FALSE(workshop_.Stop(guid));
    const std::string next = Made(TextOrder("x"));
    EXPECT_EQ(Files(), std::set<std::string>{next + ".txt"});
}

TEST_F(StationWorkshop, WorkThatIsDroppedWhileItWaitsIsNeverMade)
{
    const Blocker blocker;
    const std::string first = workshop_.Take(blocker.Order());
    bool is_made = false;
    WorkOrder order;
    order.make = [&is_made](const fs::path&, WorkProgress&) { is_made = true; };
    EXPECT_TRUE(workshop_.Drop(workshop_.Take(order)));
    blocker.LetEnd();
    Made(TextOrder("x"));
    EXPECT_FALSE(is_made);
    EXPECT_EQ(Poll(first), WorkState::Ready);
}

TEST_F(StationWorkshop, DropEndsAWaitForTheWork)
{
    const Blocker blocker;
    const std::string guid = workshop_.Take(blocker.Order());
    std::thread waiting([this, &guid] { workshop_.WaitUntilDone(guid); });
    workshop_.Drop(guid);
    waiting.join();
}

TEST_F(StationWorkshop, CloseEndsTheMakingEveryWaitAndAllOrders)
{
    const Blocker blocker;
    const std::string guid = workshop_.Take(blocker.Order());
    const std::string waiting_work = workshop_.Take(TextOrder("x"));
    std::thread first([this, &guid] { workshop_.WaitUntilDone(guid); });
    std::thread second([this, &waiting_work] { workshop_.WaitUntilDone(waiting_work); });
    workshop_.Close();
    first.join();
    second.join();
    EXPECT_EQ(workshop_.Take(TextOrder("x")), "");
}

TEST_F(StationWorkshop, OrdersBeyondTheQueueAreRefusedUntilThereIsRoom)
{
    const Blocker blocker;
    const std::string first = workshop_.Take(blocker.Order());
    blocker.WaitUntilBegun();
    std::string last;
    for (int i = 0; i < 64; ++i) {
        last = workshop_.Take(TextOrder("x"));
        ASSERT_NE(last, "") << i;
    }
    EXPECT_EQ(workshop_.Take(TextOrder("x")), "");
    workshop_.Drop(last);
    EXPECT_NE(workshop_.Take(TextOrder("x")), "");
}

TEST_F(StationWorkshop, OldWorkThatIsDoneGivesWay)
{
    const std::string first = Made(TextOrder("first"));
    const std::string second = Made(TextOrder("second"));
    for (int i = 0; i < 255; ++i)
        Made(TextOrder("x"));
    EXPECT_FALSE(workshop_.Poll(first));
    EXPECT_TRUE(workshop_.Find(second));
    EXPECT_EQ(Files().size(), 256u);
}

TEST_F(StationWorkshop, LeftOversOfAnEarlierProcessAreRemoved)
{
    const fs::path folder = path_ / "earlier";
    fs::create_directories(folder / "logs");
    std::ofstream(folder / "a.csv.part") << "half";
    std::ofstream(folder / "logs" / "b.log") << "b";
    const Workshop other(folder);
    EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(StationWorkshop, FolderThatCantBeMadeIsTold)
{
    std::ofstream(path_ / "file") << "x";
    EXPECT_THROW(Workshop(path_ / "file" / "work"), StoreError);
}

TEST_F(StationWorkshop, ManyClientsAtOnceEachGetTheirOwn)
{
    std::vector<std::thread> clients;
    for (int number = 0; number < 8; ++number)
        clients.emplace_back([this, number] {
            for (int i = 0; i < 25; ++i) {
                const std::string text = std::to_string(number * 1000 + i);
                const std::string guid = workshop_.Take(TextOrder(text));
                if (i % 3 == 0) {
                    workshop_.Stop(guid);
                    workshop_.Poll(guid);
                } else {
                    workshop_.WaitUntilDone(guid);
                    std::string there;
                    std::ifstream(workshop_.Find(guid).value()) >> there;
                    EXPECT_EQ(there, text);
                }
                EXPECT_TRUE(workshop_.Drop(guid));
            }
        });
    for (std::thread& client : clients)
        client.join();
    Made(TextOrder("x"));
    EXPECT_EQ(Files().size(), 1u);
}
