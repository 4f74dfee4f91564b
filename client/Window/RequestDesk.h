#pragma once

#include "Job.h"

#include <map>

namespace FetchyardClient {

// What became of a request.
struct Submission
{
    std::string label;
    std::vector<Violation> violations;  // it was refused for them
    std::string reason;                 // or for this, in words
    std::vector<std::string> guids;     // tasks that were made of it
    bool is_held_back = false;          // it waits for another export of one archive name
};

// Takes requests and makes tasks of them. Two exports whose archives have one name never run at once: the
// second is held back until the first has ended. One thread.
class RequestDesk
{
public:
    Submission Submit(const RequestSource& source);
    // Hands over what was held back and may go now.
    std::vector<Submission> HandOverReady();

private:
    bool IsArchiveBusy(const Job& job);
    Submission Hand(Job& job);

    std::vector<Job> held_back_;
    std::map<std::string, std::string> makers_;  // guid of the last task to make an archive of the name
};

}  // namespace FetchyardClient
