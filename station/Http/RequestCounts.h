#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace Station {

// What the station has been asked, for tests that count requests and bytes. Any thread.
class RequestCounts
{
public:
    struct Entry
    {
        std::uint64_t count = 0;
        std::uint64_t bytes = 0;  // of bodies, as far as they were sent
    };
    struct Snapshot
    {
        std::map<std::string, Entry> by_path;  // the path without its query
        std::uint64_t connections = 0;         // opened since the last reset
        std::uint64_t most_at_once = 0;        // requests in work at the same time
    };

    void ConnectionOpened();
    void RequestBegan(const std::string& path);
    void RequestEnded();
    // Called before the bytes leave, so that a client that has them finds them counted.
    void BytesLeave(const std::string& path, std::uint64_t bytes);

    Snapshot Take() const;
    void Reset();

private:
    mutable std::mutex mutex_;
    Snapshot counts_;
    std::uint64_t in_work_ = 0;
};

}  // namespace Station
