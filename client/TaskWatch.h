#pragma once

#include "FetchyardBussiness/DownloadBussinessManager.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace FetchyardClient {

// Hears the states of all tasks and keeps them in the order of arrival. Reports come on the notification
// thread, questions from any other.
class TaskWatch final : public FetchyardBussiness::CDownloadBussinessManagerObserver
{
public:
    void UpdateDownloadBussinessManagerState(const Param& param) override;

    // Every report of a task so far.
    std::vector<Param> ReportsOf(const std::string& guid) const;

private:
    mutable std::mutex mutex_;
    std::map<std::string, std::vector<Param>> reports_;
};

}  // namespace FetchyardClient
