#pragma once

#include "Job.h"
#include "LibraryHost.h"

#include <string>
#include <vector>

namespace FetchyardClient {

// Ends of the program.
enum ExitCode : int {
    kAllWell = 0,
    kSomethingFailed =
        1,          // a task did not finish, or a file that was asked for is not there or does not open
    kBadInput = 2,  // a request was refused before it was begun, or the command line is wrong
};

struct RunOptions
{
    HostOptions host;
    bool encipher_passwords = false;    // "PassWord" of the requests is in clear and is ciphered first
    bool discard_at_interrupt = false;  // an interrupt deletes the exports, with their folders
};

// Reads request files; false, with a message printed, if one can't be read.
bool ReadRequests(const std::vector<std::string>& paths, std::vector<RequestSource>& requests);
// Checks the requests, runs them all, shows them, and looks at what they left, or lists the files that
// failed. Ctrl-C stops the tasks in order, or deletes them; a second one leaves at once. Requests whose
// archives have one name run one after the other.
int RunRequests(const RunOptions& options, const std::vector<RequestSource>& requests);

}  // namespace FetchyardClient
