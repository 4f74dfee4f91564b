#include "Window/TaskChanges.h"

namespace FetchyardClient {

void TaskChanges::UpdateDownloadBussinessManagerState(const Param& param)
{
    Touch(param.task_guid);
}

void TaskChanges::Touch(const std::string& guid)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (known_.insert(guid).second)
        changed_.push_back(guid);
}

std::vector<std::string> TaskChanges::Take()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    known_.clear();
    std::vector<std::string> changed;
    changed.swap(changed_);
    return changed;
}

}  // namespace FetchyardClient
