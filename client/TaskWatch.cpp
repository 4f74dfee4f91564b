#include "TaskWatch.h"

namespace FetchyardClient {

void TaskWatch::UpdateDownloadBussinessManagerState(const Param& param)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    reports_[param.task_guid].push_back(param);
}

std::vector<TaskWatch::Param> TaskWatch::ReportsOf(const std::string& guid) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = reports_.find(guid);
    return found == reports_.end() ? std::vector<Param>() : found->second;
}

}  // namespace FetchyardClient
