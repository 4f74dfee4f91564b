#include "station/Http/Faults.h"

#include <chrono>

namespace Station {
namespace {

bool Matches(const Fault& fault, const std::string& path)
{
    if (fault.path.empty())
        return true;
    const char last = fault.path.back();
    if (last != '*' && last != '/')
        return path == fault.path;
    const std::size_t begin = fault.path.size() - (last == '*' ? 1 : 0);
    return path.compare(0, begin, fault.path, 0, begin) == 0;
}

// Counts the request; true if it is the fault's turn.
bool IsItsTurn(Fault& fault)
{
    if (fault.after > 0) {
        --fault.after;
        return false;
    }
    if (fault.count == 0)
        return false;
    if (fault.count > 0)
        --fault.count;
    return true;
}

}  // namespace

void FaultPlan::Add(const Fault& fault)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    faults_.push_back(fault);
}

void FaultPlan::Clear()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    faults_.clear();
}

FaultPlan::Verdict FaultPlan::Judge(const std::string& path)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    Verdict verdict;
    for (Fault& fault : faults_) {
        if (!Matches(fault, path) || !IsItsTurn(fault))
            continue;
        if (fault.kind == FaultKind::Delay) {
            verdict.delay_ms += fault.delay_ms;
        } else if (!verdict.is_hit) {
            verdict.is_hit = true;
            verdict.fault = fault;
        }
    }
    return verdict;
}

void FaultPlan::WaitOut(std::int64_t delay_ms)
{
    if (delay_ms <= 0)
        return;
    std::unique_lock<std::mutex> lock(mutex_);
    ended_.wait_for(lock, std::chrono::milliseconds(delay_ms), [this] { return is_ending_; });
}

void FaultPlan::EndWaits()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    is_ending_ = true;
    ended_.notify_all();
}

}  // namespace Station
