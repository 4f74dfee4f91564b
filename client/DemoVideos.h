#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace FetchyardClient {

// The "VideoDownload" of a demonstration: ten seconds of each of the station's first three cameras, plain,
// with lines and the watermark, and as avi. Empty if the station keeps no recordings. Waits for the station.
nlohmann::json DemoVideos(const std::string& station);

}  // namespace FetchyardClient
