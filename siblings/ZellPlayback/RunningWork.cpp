#include "RunningWork.h"

#include <map>
#include <mutex>

namespace ZellPlayback {
namespace {

// Never destroyed: threads may still work while the process leaves.
struct AllWork
{
    std::mutex mutex;
    std::multimap<std::string, std::shared_ptr<std::atomic<bool>>> stops;

    static AllWork& Instance()
    {
        static auto* const all = new AllWork;
        return *all;
    }
};

}  // namespace

RunningWork::RunningWork(const std::string& source)
    : source_(source), stop_(std::make_shared<std::atomic<bool>>(false))
{
    AllWork& all = AllWork::Instance();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.stops.emplace(source_, stop_);
}

RunningWork::~RunningWork()
{
    AllWork& all = AllWork::Instance();
    const std::lock_guard<std::mutex> lock(all.mutex);
    const auto [begin, end] = all.stops.equal_range(source_);
    for (auto one = begin; one != end; ++one) {
        if (one->second == stop_) {
            all.stops.erase(one);
            return;
        }
    }
}

void RunningWork::StopAllOf(const std::string& source)
{
    AllWork& all = AllWork::Instance();
    const std::lock_guard<std::mutex> lock(all.mutex);
    const auto [begin, end] = all.stops.equal_range(source);
    for (auto one = begin; one != end; ++one)
        *one->second = true;
}

}  // namespace ZellPlayback
