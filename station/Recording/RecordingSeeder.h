#pragma once

#include "station/Data/Store.h"

#include <cstdint>
#include <filesystem>

namespace Station {

// Draws the last minutes before the end, which is rounded down to a second, for each camera of the site: a
// file for each minute and scene, which the cameras of that scene share. Does nothing for 0 minutes. Needs
// the letters of Lettering. Throws StoreError and VideoError.
void SeedRecordings(Database& database, const std::filesystem::path& data, std::int64_t end, int minutes);

}  // namespace Station
