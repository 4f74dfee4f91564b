#pragma once

#include <map>
#include <string>
#include <vector>

namespace SystemTest {

// A task as the store of a client has it.
struct KeptTask
{
    std::string guid;
    std::string name;
    int state = 0;
    bool is_interrupted = false;
    // Of the resume record, as far as a report export has them.
    int current_page = -1;
    bool total_page_is_finished = true;
    bool restart_is_need_download = true;
    int missing_pictures = 0;  // of its list, not fetched yet as far as the record knows
};

// What the store in the data folder holds, read from a copy by the engine that is to read it next. A test
// fails if that has anything to complain of.
std::vector<KeptTask> KeptTasks(const std::string& data_folder);

// The events that a client's switch has written down.
struct Events
{
    std::map<std::string, long> counts;            // by kind: "store", "state", "page"
    std::map<std::string, std::vector<int>> told;  // states that the observers heard, by guid
};
Events ReadEvents(const std::string& path);

// Whether a state is the last of a run.
bool IsEnd(int state);
// The bytes of a file; empty if it is not there.
std::string Bytes(const std::string& path);

}  // namespace SystemTest
