#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace Station {

enum class FaultKind { Delay, Status, Cut, Garbage, Reset, Slow, Range };

// One way in which requests are to go wrong.
struct Fault
{
    std::string
        path;  // as asked, without the query; a final "/" or "*" stands for any rest; empty matches all
    FaultKind kind = FaultKind::Delay;
    std::int64_t delay_ms = 0;
    int status = 500;
    std::uint64_t cut_at = 0;           // bytes of the body that are sent before the connection closes
    std::int64_t bytes_per_second = 0;  // of a slow body; 0: as fast as it goes
    std::int64_t after = 0;             // matching requests that go well first
    std::int64_t count = -1;            // requests that are hit, -1 for all further ones
};

// The faults in force, in the order they were added. Any thread.
class FaultPlan
{
public:
    // What one request has to suffer: the delays add up, of the other kinds the first one counts.
    struct Verdict
    {
        std::int64_t delay_ms = 0;
        bool is_hit = false;
        Fault fault;  // never of the kind Delay
    };

    void Add(const Fault& fault);
    void Clear();
    Verdict Judge(const std::string& path);
    // Waits on the caller's thread; ends early once the station stops.
    void WaitOut(std::int64_t delay_ms);
    void EndWaits();

private:
    std::mutex mutex_;
    std::condition_variable ended_;
    bool is_ending_ = false;
    std::vector<Fault> faults_;
};

}  // namespace Station
