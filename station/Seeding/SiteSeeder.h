#pragma once

#include "station/Data/Database.h"

#include <cstdint>

namespace Station {

struct SeedPlan
{
    int events = 4000;
    int cameras = 12;
    int weeks = 4;
    std::uint64_t seed = 1;
    std::int64_t end = 0;  // the last event is before this time
};

// Fills an empty store with a believable site. The same plan gives the same site. Throws StoreError.
void SeedSite(Database& database, const SeedPlan& plan);

}  // namespace Station
