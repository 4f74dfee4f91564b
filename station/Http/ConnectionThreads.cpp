#include "station/Http/ConnectionThreads.h"

#include <utility>

namespace Station {

ConnectionThreads::ConnectionThreads(std::size_t limit, std::atomic<bool>& is_crowded)
    : limit_(limit), is_crowded_(is_crowded)
{
}

void ConnectionThreads::enqueue(std::function<void()> task)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    tasks_.push_back(std::move(task));
    if (tasks_.size() > idle_ && threads_.size() < limit_)
        threads_.emplace_back([this] { Serve(); });
    is_crowded_ = tasks_.size() > idle_ && threads_.size() == limit_;
    changed_.notify_one();
}

void ConnectionThreads::Serve()
{
    std::unique_lock<std::mutex> lock(mutex_);
    while (true) {
        ++idle_;
        changed_.wait(lock, [this] { return is_ending_ || !tasks_.empty(); });
        --idle_;
        if (tasks_.empty())
            return;
        const std::function<void()> task = std::move(tasks_.front());
        tasks_.pop_front();
        is_crowded_ = tasks_.size() > idle_ && threads_.size() == limit_;
        lock.unlock();
        task();
        lock.lock();
    }
}

void ConnectionThreads::shutdown()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        is_ending_ = true;
        changed_.notify_all();
    }
    for (std::thread& thread : threads_)
        thread.join();
}

}  // namespace Station
