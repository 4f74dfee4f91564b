#include "Window/TaskMeter.h"

#include "FetchyardLogical/DownloadTaskManager.h"

#include <QDirIterator>

#include <algorithm>

namespace FetchyardClient {

using FetchyardLogical::RecordKind;
using FetchyardLogical::TaskView;

namespace {

constexpr std::chrono::milliseconds kShortestPause(1000);
// Of the time at most one fiftieth is spent on looks.
constexpr int kPauseForCost = 50;

unsigned long long BytesOnDisk(unsigned int number)
{
    constexpr unsigned long long kilobyte = 1024;
    const auto& tasks = FetchyardLogical::CDownloadTaskManager::Instance().GetAllTask();
    const auto found = tasks.find(number);
    return found == tasks.end() ? 0 : kilobyte * found->second->GetProgress().GetVal_finished_size();
}

unsigned long PicturesBelow(const std::string& folder)
{
    QDirIterator files(QString::fromStdString(folder), {"*.jpg", "*.jpeg", "*.png"}, QDir::Files,
                       QDirIterator::Subdirectories);
    unsigned long count = 0;
    for (; files.hasNext(); ++count)
        files.next();
    return count;
}

}  // namespace

TaskRow TaskMeter::Measure(const TaskView& task)
{
    TaskRow row;
    row.task = task;
    if (task.number == 0)
        return row;
    row.bytes = BytesOnDisk(task.number);
    if (task.record_kind == RecordKind::Export && !task.folder.empty())
        row.pictures = PicturesBelow(task.folder);
    row.is_measured = true;
    const Clock::time_point now = Clock::now();
    const auto before = looks_.find(task.guid);
    if (before != looks_.end() && row.bytes > before->second.bytes) {
        const std::chrono::duration<double> span = now - before->second.time;
        row.rate = static_cast<double>(row.bytes - before->second.bytes) / std::max(span.count(), 0.001);
    }
    if (task.is_running)
        looks_[task.guid] = {row.bytes, now};
    else
        looks_.erase(task.guid);
    return row;
}

std::chrono::milliseconds TaskMeter::Pause(Clock::duration cost)
{
    return std::max(kShortestPause,
                    std::chrono::duration_cast<std::chrono::milliseconds>(cost * kPauseForCost));
}

}  // namespace FetchyardClient
