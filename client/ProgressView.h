#pragma once

#include "FetchyardLogicalHost/EngineHost.h"

#include <chrono>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace FetchyardClient {

// One line for each task: state, pages, kilobytes on disk, rate, elapsed time. On a terminal the lines are
// redrawn in place; elsewhere a line is printed when a task's state changes and when its pages have, once in
// a second at most.
class ProgressView
{
public:
    using Clock = std::chrono::steady_clock;

    explicit ProgressView(bool redraw);

    // Shows the tasks as they are now. guids names those to show, in order.
    void Show(const std::vector<std::string>& guids, Clock::time_point now);
    // Prints a line that stays, above the redrawn ones.
    void Say(const std::string& line);

private:
    struct Shown
    {
        ZellTaskKit::DownloadState state = ZellTaskKit::Unstarted;
        bool was_running = false;
        unsigned long pages = 0;
        unsigned long long kilobytes = 0;
        unsigned long long kilobytes_before = 0;
        Clock::time_point measured_before;
        Clock::time_point measured;
        Clock::time_point started;
        Clock::time_point ended;
        Clock::time_point printed;
        bool known = false;
    };

    std::string LineOf(const FetchyardLogical::TaskView& task, Shown& shown, Clock::time_point now);
    void Measure(const FetchyardLogical::TaskView& task, Shown& shown, Clock::time_point now);
    bool IsWorthALine(const FetchyardLogical::TaskView& task, const Shown& shown,
                      Clock::time_point now) const;
    void EraseLines();

    bool redraw_;
    std::size_t lines_on_screen_ = 0;
    std::map<std::string, Shown> shown_;
};

}  // namespace FetchyardClient
