#pragma once

#include "Window/TaskRow.h"

#include <chrono>
#include <map>

namespace FetchyardClient {

// Looks at the disk for what tasks have made so far. A look walks the folder, so the pause between two grows
// with what they cost. One thread.
class TaskMeter
{
public:
    using Clock = std::chrono::steady_clock;

    // The task as it is now, measured if it lives.
    TaskRow Measure(const FetchyardLogical::TaskView& task);
    // How long to wait until the next round of looks, given what the last one took.
    static std::chrono::milliseconds Pause(Clock::duration cost);

private:
    struct Look
    {
        unsigned long long bytes = 0;
        Clock::time_point time;
    };

    std::map<std::string, Look> looks_;  // the last one at each task that runs
};

}  // namespace FetchyardClient
