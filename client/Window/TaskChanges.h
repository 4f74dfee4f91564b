#pragma once

#include "FetchyardBussiness/DownloadBussinessManager.h"

#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace FetchyardClient {

// Hears the states of all tasks and remembers which tasks changed, each once however often it did, and which
// came to an end. Reports come on the notification thread, questions from any other.
class TaskChanges final : public FetchyardBussiness::CDownloadBussinessManagerObserver
{
public:
    void UpdateDownloadBussinessManagerState(const Param& param) override;
    // Marks a task as changed that told no state.
    void Touch(const std::string& guid);

    // Those that changed since the last call, in the order of their first change.
    std::vector<std::string> Take();

private:
    std::mutex mutex_;
    std::set<std::string> known_;
    std::vector<std::string> changed_;
};

}  // namespace FetchyardClient
