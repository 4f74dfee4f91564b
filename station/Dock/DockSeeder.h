#pragma once

#include "station/Data/Database.h"

#include <cstdint>
#include <filesystem>

namespace Station {

// Gives a site two docking devices with four files each: a picture, a video, a sound and a list of the times
// at which they were recorded, in the last hours before the end. The same seed gives the same files. Throws
// StoreError.
void SeedDock(Database& database, const std::filesystem::path& data, std::uint64_t seed, std::int64_t end);

}  // namespace Station
