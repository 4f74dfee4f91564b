#pragma once

#include "HttpTransfer.h"

#include <mutex>
#include <string>
#include <vector>

namespace ZellNetLink {

// Moves a transfer on the thread that waits for it, which saves two changes of threads a request. A lane is a
// handle with the connections that it keeps; one that is free, of the same server if there is such, serves
// the next caller, so there are as many as threads ever waited at once. Never destroyed, as the worker.
class HttpLanes
{
public:
    HttpLanes() = default;
    HttpLanes(const HttpLanes&) = delete;
    HttpLanes& operator=(const HttpLanes&) = delete;
    ~HttpLanes() = default;

    // Calls the transfer's done before it returns.
    void Run(HttpTransfer& transfer);

private:
    struct Lane
    {
        CURLM* multi = nullptr;
        CURL* easy = nullptr;
        std::string origin;  // of the last transfer
    };

    Lane Take(const std::string& origin);
    void GiveBack(Lane lane);

    std::mutex mutex_;
    std::vector<Lane> free_;
};

}  // namespace ZellNetLink
