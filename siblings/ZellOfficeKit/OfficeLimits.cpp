#include "ZellOfficeKitHost/OfficeLimits.h"

#include <algorithm>
#include <mutex>

namespace ZellOfficeKit {
namespace {

struct Shared
{
    std::mutex mutex;
    OfficeLimits limits;
};

// Never destroyed: threads may still work while the process leaves.
Shared& SharedLimits()
{
    static auto* shared = new Shared;
    return *shared;
}

}  // namespace

void SetOfficeLimits(const OfficeLimits& limits)
{
    const OfficeLimits format;
    OfficeLimits valid = limits;
    valid.rows = std::clamp(limits.rows, 1, format.rows);
    valid.columns = std::clamp(limits.columns, 1, format.columns);
    valid.links = std::clamp(limits.links, 0, format.links);
    valid.text_units = std::clamp(limits.text_units, 1, format.text_units);
    valid.init_failure_delay_ms = std::max(limits.init_failure_delay_ms, 0);
    valid.zip64_above = std::min(limits.zip64_above, format.zip64_above);
    Shared& shared = SharedLimits();
    const std::lock_guard lock(shared.mutex);
    shared.limits = valid;
}

OfficeLimits CurrentOfficeLimits()
{
    Shared& shared = SharedLimits();
    const std::lock_guard lock(shared.mutex);
    return shared.limits;
}

}  // namespace ZellOfficeKit
