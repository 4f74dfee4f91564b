#include "station/Http/RequestCounts.h"

#include <algorithm>

namespace Station {

void RequestCounts::ConnectionOpened()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    ++counts_.connections;
}

void RequestCounts::RequestBegan(const std::string& path)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    ++counts_.by_path[path].count;
    counts_.most_at_once = std::max(counts_.most_at_once, ++in_work_);
}

void RequestCounts::RequestEnded()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    --in_work_;
}

void RequestCounts::BytesLeave(const std::string& path, std::uint64_t bytes)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    counts_.by_path[path].bytes += bytes;
}

RequestCounts::Snapshot RequestCounts::Take() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return counts_;
}

void RequestCounts::Reset()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    counts_ = {};
}

}  // namespace Station
