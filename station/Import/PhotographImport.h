#pragma once

#include "station/Data/Database.h"

#include <cstdint>
#include <filesystem>
#include <ostream>

namespace Station {

struct ImportCount
{
    int added = 0;
    int known = 0;    // there already, from an earlier import
    int refused = 0;  // JPEG or PNG files that can't be read
};

// Makes an event of each JPEG and PNG file in a folder and the folders within, in the order of their paths,
// and copies the files into the data folder. camera 0 stands for a camera of its own for photographs. What is
// refused is told on the stream. Throws StoreError.
ImportCount ImportPhotographs(Database& database, const std::filesystem::path& data,
                              const std::filesystem::path& folder, std::int64_t camera,
                              std::ostream& complaints);

}  // namespace Station
