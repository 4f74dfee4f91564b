#pragma once

#include "station/Data/Store.h"

#include <filesystem>

namespace Station {

// Writes what the devices of a site keep as files, into the folder's "files/": a log for each of the first
// cameras, "camera-<number>.log", and a package of software, "firmware-2.4.1.bin". Throws StoreError.
void SeedFiles(Database& database, const std::filesystem::path& data);

}  // namespace Station
