#pragma once

#include "station/Recording/Recordings.h"

#include <cstdint>
#include <filesystem>

namespace Station {

// Takes a video of any kind into the data folder, as what the camera recorded from that time on (milliseconds
// since 1970, UTC). H.264 and AAC that can be cut well are kept as they are, all else is converted. A file
// that is cut short, holds no video, or is of a time of which the camera has a recording is refused: nothing
// is left of it then. Throws StoreError and VideoError.
Recording ImportRecording(Database& database, const std::filesystem::path& data,
                          const std::filesystem::path& file, std::int64_t camera, std::int64_t begin);

}  // namespace Station
