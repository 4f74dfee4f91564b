#pragma once

#include <atomic>
#include <memory>
#include <string>

namespace ZellPlayback {

// Work on one source that can be ended by its path. Any thread; several on the same source end together.
class RunningWork
{
public:
    explicit RunningWork(const std::string& source);
    RunningWork(const RunningWork&) = delete;
    RunningWork& operator=(const RunningWork&) = delete;
    ~RunningWork();

    const std::atomic<bool>& Stop() const { return *stop_; }
    static void StopAllOf(const std::string& source);

private:
    std::string source_;
    std::shared_ptr<std::atomic<bool>> stop_;
};

}  // namespace ZellPlayback
