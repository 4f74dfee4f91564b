#include "station/Data/LoginTries.h"

#include <iterator>

namespace Station {

LoginTries::Remaining LoginTries::Left(const Count& count, std::int64_t now)
{
    const std::int64_t open_at = count.last + kClosedSeconds;
    Remaining remaining;
    if (now >= open_at)
        return remaining;
    remaining.tries = kTries - count.wrong;
    if (remaining.tries == 0)
        remaining.closed_seconds = open_at - now;
    return remaining;
}

LoginTries::Remaining LoginTries::Of(const std::string& name, std::int64_t now)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = counts_.find(name);
    return found == counts_.end() ? Remaining() : Left(found->second, now);
}

// A wrong password for a closed account keeps it closed no longer.
LoginTries::Remaining LoginTries::CountWrong(const std::string& name, std::int64_t now)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (counts_.size() >= kMostNames)
        Forget(now);
    Count& count = counts_[name];
    const Remaining before = Left(count, now);
    if (before.tries > 0)
        count = {kTries - before.tries + 1, now};
    return Left(count, now);
}

void LoginTries::CountRight(const std::string& name)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    counts_.erase(name);
}

// Whoever tries name after name must not fill the memory: counts that have run out go, and all of them if
// none has.
void LoginTries::Forget(std::int64_t now)
{
    for (auto count = counts_.begin(); count != counts_.end();)
        count = now >= count->second.last + kClosedSeconds ? counts_.erase(count) : std::next(count);
    if (counts_.size() >= kMostNames)
        counts_.clear();
}

}  // namespace Station
