#include "tests/unit/TempFolder.h"
#include "ZellBase/MessageLoop.h"
#include "ZellBaseHost/LogHost.h"

#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <future>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using Zell::Base::CMessageLoopBase;
using Zell::Base::CTask;

namespace {

class FunctionTask : public CTask
{
public:
    explicit FunctionTask(std::function<void()> work) : work_(std::move(work)) {}
    void Exec() override { work_(); }

private:
    std::function<void()> work_;
};

void Post(CMessageLoopBase& loop, std::function<void()> work)
{
    loop.PostTask(new FunctionTask(std::move(work)));
}

// Raised on one thread and waited for on another; each holds a copy, so neither depends on the other's life.
class Signal
{
public:
    void Raise() const { state_->promise.set_value(); }
    void Wait() const { state_->future.wait(); }

private:
    struct State
    {
        std::promise<void> promise;
        std::shared_future<void> future = promise.get_future().share();
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

void WaitUntilEmpty(CMessageLoopBase& loop)
{
    const Signal reached;
    Post(loop, [reached] { reached.Raise(); });
    reached.Wait();
}

// Raises the signal when the last copy goes.
std::shared_ptr<int> Witness(const Signal& gone)
{
    return {new int(0), [gone](const int* value) {
                delete value;
                gone.Raise();
            }};
}

}  // namespace

TEST(MessageLoop, RunsTasksInTheirOrderOnOneThread)
{
    CMessageLoopBase loop;
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    for (int i = 0; i < 100; ++i)
        Post(loop, [&, i] {
            order.push_back(i);
            threads.push_back(std::this_thread::get_id());
        });
    WaitUntilEmpty(loop);
    ASSERT_EQ(order.size(), 100u);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
    EXPECT_THAT(threads, ::testing::Each(threads.front()));
    EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST(MessageLoop, TakesATaskFromWithinATask)
{
    CMessageLoopBase loop;
    const Signal inner;
    Post(loop, [&loop, inner] { Post(loop, [inner] { inner.Raise(); }); });
    inner.Wait();
}

TEST(MessageLoop, DeletesATaskAfterItsRun)
{
    CMessageLoopBase loop;
    const Signal gone;
    auto witness = Witness(gone);
    Post(loop, [witness] {});
    witness.reset();
    gone.Wait();
}

TEST(MessageLoop, GoesOnAfterAnExceptionAndLogsIt)
{
    const TempFolder folder;
    ASSERT_TRUE(Zell::Base::details::SetLogFile(folder.File("client.log"), 3));
    CMessageLoopBase loop;
    Post(loop, [] { throw std::runtime_error("no more paper"); });
    Post(loop, [] { throw 7; });
    WaitUntilEmpty(loop);
    Zell::Base::details::FlushLog();
    std::stringstream log;
    log << std::ifstream(folder.File("client.log")).rdbuf();
    Zell::Base::details::SetLogFile("", 5);
    EXPECT_THAT(log.str(), ::testing::HasSubstr(" E ZellBase "));
    EXPECT_THAT(log.str(), ::testing::HasSubstr("a task threw: no more paper["));
    EXPECT_THAT(log.str(), ::testing::HasSubstr("a task threw["));
}

TEST(MessageLoop, DeletesWaitingTasksUnrunWhenItGoes)
{
    const Signal started;
    const Signal release;
    const Signal gone;
    std::atomic<bool> ran{false};
    {
        CMessageLoopBase loop;
        Post(loop, [started, release] {
            started.Raise();
            release.Wait();
        });
        started.Wait();
        Post(loop, [&ran, witness = Witness(gone)] { ran = true; });
    }
    gone.Wait();
    EXPECT_FALSE(ran);
    release.Raise();
}

TEST(MessageLoop, TakesNullForNothing)
{
    CMessageLoopBase loop;
    loop.PostTask(nullptr);
    WaitUntilEmpty(loop);
}

TEST(MessageLoop, TakesTasksFromManyThreads)
{
    CMessageLoopBase loop;
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int n = 0; n < 500; ++n)
                Post(loop, [&count] { ++count; });
        });
    for (auto& thread : threads)
        thread.join();
    WaitUntilEmpty(loop);
    EXPECT_EQ(count, 2000);
}
