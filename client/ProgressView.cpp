#include "ProgressView.h"

#include "FetchyardLogical/DownloadTaskManager.h"
#include "Platform/Terminal.h"
#include "Words.h"
#include "ZellBase/Util.h"

#include <algorithm>
#include <cstdio>

namespace FetchyardClient {

using FetchyardLogical::TaskView;
using Zell::Base::StringUtil::str_fmt;

namespace {

// A look at the disk walks the export folder, so it is not taken at each redraw.
constexpr std::chrono::milliseconds kBetweenMeasures(1000);
constexpr std::chrono::milliseconds kBetweenLines(1000);

unsigned long long KilobytesOnDisk(unsigned int number)
{
    const auto tasks = FetchyardLogical::CDownloadTaskManager::Instance().GetAllTask();
    const auto found = tasks.find(number);
    return found == tasks.end() ? 0 : found->second->GetProgress().GetVal_finished_size();
}

// Cut to the width, so that a redrawn line stays one line; never inside a letter.
std::string FitLine(std::string line, std::size_t width)
{
    if (line.size() <= width)
        return line;
    std::size_t end = width;
    while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0u) == 0x80u)
        --end;
    line.resize(end);
    return line;
}

}  // namespace

ProgressView::ProgressView(bool redraw) : redraw_(redraw) {}

void ProgressView::Measure(const TaskView& task, Shown& shown, Clock::time_point now)
{
    if (!shown.known || (!shown.was_running && task.is_running)) {
        shown.started = now;
        shown.ended = now;
    }
    const bool just_ended = shown.was_running && !task.is_running;
    if (!shown.known || just_ended || now - shown.measured >= kBetweenMeasures) {
        shown.kilobytes_before = shown.kilobytes;
        shown.measured_before = shown.measured;
        shown.kilobytes = KilobytesOnDisk(task.number);
        shown.measured = now;
    }
    if (task.is_running || task.is_waiting)
        shown.ended = now;
}

std::string ProgressView::LineOf(const TaskView& task, Shown& shown, Clock::time_point now)
{
    Measure(task, shown, now);
    const bool moving = task.is_running && shown.kilobytes > shown.kilobytes_before &&
                        shown.measured_before.time_since_epoch().count() != 0;
    std::string rate;
    if (moving) {
        const std::chrono::duration<double> span = shown.measured - shown.measured_before;
        const double bytes = 1024.0 * static_cast<double>(shown.kilobytes - shown.kilobytes_before);
        rate = "  " + SizeWords(static_cast<unsigned long long>(bytes / span.count())) + "/s";
    }
    const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(shown.ended - shown.started);
    return str_fmt("%-24s  %-10s  %s page%s  %s kB%s  %s", task.name.c_str(), StateWords(task.state).c_str(),
                   GroupedNumber(task.pages).c_str(), task.pages == 1 ? "" : "s",
                   GroupedNumber(shown.kilobytes).c_str(), rate.c_str(), DurationWords(elapsed).c_str());
}

bool ProgressView::IsWorthALine(const TaskView& task, const Shown& shown, Clock::time_point now) const
{
    if (!shown.known || task.state != shown.state || task.is_running != shown.was_running)
        return true;
    return task.pages != shown.pages && now - shown.printed >= kBetweenLines;
}

void ProgressView::EraseLines()
{
    if (lines_on_screen_ > 0)
        std::printf("\x1b[%zuA\x1b[J", lines_on_screen_);
    lines_on_screen_ = 0;
}

void ProgressView::Show(const std::vector<std::string>& guids, Clock::time_point now)
{
    if (redraw_)
        EraseLines();
    const auto width = static_cast<std::size_t>(std::max(20, TerminalWidth() - 1));
    for (const std::string& guid : guids) {
        TaskView task;
        if (!FetchyardLogical::FindTask(guid, task))
            continue;
        Shown& shown = shown_[guid];
        const bool worth_a_line = redraw_ || IsWorthALine(task, shown, now);
        if (worth_a_line) {
            std::printf("%s\n",
                        FitLine(LineOf(task, shown, now), redraw_ ? width : std::string::npos).c_str());
            shown.printed = now;
            shown.pages = task.pages;
            lines_on_screen_ += redraw_ ? 1 : 0;
        }
        shown.known = true;
        shown.state = task.state;
        shown.was_running = task.is_running;
    }
    std::fflush(stdout);
}

void ProgressView::Say(const std::string& line)
{
    if (redraw_)
        EraseLines();
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

}  // namespace FetchyardClient
