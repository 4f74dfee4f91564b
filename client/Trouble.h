#pragma once

#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace FetchyardClient {

// What the libraries around the business layer complain of at level 5, each complaint once: a workbook that
// can't be created and is tried again, a disk that is full. Such things do not always reach a task's state.
class Trouble
{
public:
    Trouble();
    Trouble(const Trouble&) = delete;
    Trouble& operator=(const Trouble&) = delete;
    ~Trouble();

    // The complaints since the last call, in order.
    std::vector<std::string> Take();

private:
    void Hear(const std::string& module, const std::string& words);

    std::mutex mutex_;
    std::set<std::string> heard_;
    std::vector<std::string> fresh_;
};

}  // namespace FetchyardClient
