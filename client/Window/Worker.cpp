#include "Window/Worker.h"

#include <future>
#include <utility>

namespace FetchyardClient {

Worker::Worker() : thread_([this] { Work(); }) {}

Worker::~Worker()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        ends_ = true;
    }
    wake_.notify_all();
    thread_.join();
}

void Worker::Post(std::function<void()> job)
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        jobs_.push_back(std::move(job));
    }
    wake_.notify_all();
}

void Worker::Finish()
{
    std::promise<void> done;
    Post([&done] { done.set_value(); });
    done.get_future().wait();
}

void Worker::Work()
{
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return ends_ || !jobs_.empty(); });
        if (jobs_.empty())
            return;
        std::function<void()> job = std::move(jobs_.front());
        jobs_.pop_front();
        lock.unlock();
        job();
        job = nullptr;
        lock.lock();
    }
}

}  // namespace FetchyardClient
