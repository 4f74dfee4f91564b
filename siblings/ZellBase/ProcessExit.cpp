#include "ProcessExit.h"

#include "Log/LogWriter.h"
#include "Platform/Process.h"
#include "ZellBaseHost/ProcessExit.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace Zell::Base::details {
namespace {

constexpr std::chrono::seconds kLongestWait(1);

// What the calling thread has told about itself.
struct ThreadMarks
{
    int worker = 0;
    int blocked = 0;
    bool leads_exit = false;  // runs the exit handlers: must never park
};
thread_local ThreadMarks marks;

// Never destroyed: parked threads stay inside it until the system ends them.
class Gate
{
public:
    static Gate& Instance()
    {
        static auto* const gate = new Gate;
        return *gate;
    }

    void Watch()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!watched_)
            WatchAgain();
    }

    bool IsLeaving() const { return leaving_.load(std::memory_order_acquire); }

    // A marked thread that runs counts; one that is blocked or parked does not.
    void AddRunning(int change)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        running_ += change;
        changed_.notify_all();
    }

    // Counts the thread as running again, unless the process is leaving: then it stays here. One lock for
    // both, so that the exit handler never goes on beside a thread that has just begun to run.
    void RunOrPark()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        if (leaving_.load(std::memory_order_relaxed) && !marks.leads_exit)
            StayForever(lock);
        ++running_;
        ++runs_;
        if ((runs_ & (runs_ - 1)) == 0)
            WatchAgain();
    }

    void Park()
    {
        if (marks.worker == 0 || marks.leads_exit)
            return;
        std::unique_lock<std::mutex> lock(mutex_);
        if (marks.blocked == 0)
            --running_;
        changed_.notify_all();
        StayForever(lock);
    }

private:
    // Handlers run latest first, and what a library made after the registration is destroyed before. So the
    // handler is registered again after 1, 2, 4, 8 ... runs: whatever the work needed from its beginning on
    // still stands when the threads are brought to a halt.
    void WatchAgain()
    {
        watched_ = CallWhenLeaving([] { Instance().Leave(); }) || watched_;
    }

    void Leave()
    {
        if (IsLeaving())
            return;
        marks.leads_exit = true;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            leaving_.store(true, std::memory_order_release);
            // A worker that itself ends the process is not to be waited for.
            const int own = marks.worker > 0 && marks.blocked == 0 ? 1 : 0;
            changed_.wait_for(lock, kLongestWait, [this, own] { return running_ <= own; });
        }
        LogWriter::Instance().Flush(kLongestWait);
    }

    [[noreturn]] void StayForever(std::unique_lock<std::mutex>& lock)
    {
        for (;;)
            never_.wait(lock);
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::condition_variable never_;
    std::atomic<bool> leaving_{false};
    bool watched_ = false;
    int running_ = 0;
    std::uint64_t runs_ = 0;
};

}  // namespace

void WatchProcessExit()
{
    Gate::Instance().Watch();
}

bool IsProcessLeaving()
{
    return Gate::Instance().IsLeaving();
}

void KeepForGood(std::shared_ptr<void> object)
{
    static auto* const mutex = new std::mutex;
    static auto* const kept = new std::vector<std::shared_ptr<void>>;
    const std::lock_guard<std::mutex> lock(*mutex);
    kept->push_back(std::move(object));
}

CWorkerMark::CWorkerMark()
{
    if (marks.worker == 0) {
        Gate::Instance().Watch();
        if (marks.blocked == 0)
            Gate::Instance().RunOrPark();
    }
    ++marks.worker;
}

CWorkerMark::~CWorkerMark()
{
    --marks.worker;
    if (marks.worker == 0 && marks.blocked == 0)
        Gate::Instance().AddRunning(-1);
}

CBlockedMark::CBlockedMark()
{
    ++marks.blocked;
    if (marks.blocked == 1 && marks.worker > 0)
        Gate::Instance().AddRunning(-1);
}

CBlockedMark::~CBlockedMark()
{
    if (marks.blocked == 1 && marks.worker > 0)
        Gate::Instance().RunOrPark();
    --marks.blocked;
}

void ParkIfLeaving()
{
    if (Gate::Instance().IsLeaving())
        Gate::Instance().Park();
}

}  // namespace Zell::Base::details
