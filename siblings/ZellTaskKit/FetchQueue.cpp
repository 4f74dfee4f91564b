#include "FetchQueue.h"

#include "ZellBase/Log.h"
#include "ZellBaseHost/ProcessExit.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

namespace ZellTaskKit {
namespace {

constexpr int kMaxThreads = 4;

class FetchQueue
{
public:
    void Add(std::function<void()> job)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        jobs_.push_back(std::move(job));
        if (idle_ == 0 && threads_ < kMaxThreads) {
            std::thread([this] { Work(); }).detach();
            ++threads_;
        }
        has_jobs_.notify_one();
    }

private:
    void Work()
    {
        const Zell::Base::details::CWorkerMark mark;
        for (;;)
            RunOne(Next());
    }

    std::function<void()> Next()
    {
        const Zell::Base::details::CBlockedMark blocked;
        std::unique_lock<std::mutex> lock(mutex_);
        ++idle_;
        has_jobs_.wait(lock, [this] { return !jobs_.empty(); });
        --idle_;
        std::function<void()> job = std::move(jobs_.front());
        jobs_.pop_front();
        return job;
    }

    static void RunOne(const std::function<void()>& job)
    {
        try {
            job();
        } catch (const std::exception& failure) {
            Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogError, "ZellTaskKit",
                                               "A fetch ended with an exception: %s", failure.what());
        }
    }

    std::mutex mutex_;
    std::condition_variable has_jobs_;
    std::deque<std::function<void()>> jobs_;
    int threads_ = 0;
    int idle_ = 0;
};

}  // namespace

void RunOnFetchThread(std::function<void()> job)
{
    static auto* queue = new FetchQueue;
    queue->Add(std::move(job));
}

}  // namespace ZellTaskKit
