#pragma once

#include <httplib.h>

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace Station {

// The threads that serve connections, made when they are needed. A connection keeps its thread while it is
// open, so IsCrowded tells the idle ones to make room.
class ConnectionThreads final : public httplib::TaskQueue
{
public:
    explicit ConnectionThreads(std::size_t limit, std::atomic<bool>& is_crowded);

    void enqueue(std::function<void()> task) override;
    void shutdown() override;

private:
    void Serve();

    const std::size_t limit_;
    std::atomic<bool>& is_crowded_;  // connections wait for a thread
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> tasks_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    bool is_ending_ = false;
};

}  // namespace Station
