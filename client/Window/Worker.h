#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace FetchyardClient {

// A thread that does one job after the other, so that the window's own never waits for a disk, a server or a
// lock of the engine.
class Worker
{
public:
    Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    // Does what was posted, then ends.
    ~Worker();

    // Any thread. A job must not throw.
    void Post(std::function<void()> job);
    // Returns when all that was posted before is done. From any thread but its own.
    void Finish();

private:
    void Work();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> jobs_;
    bool ends_ = false;
    std::thread thread_;
};

}  // namespace FetchyardClient
