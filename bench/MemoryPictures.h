#pragma once

#include <string>

// Pictures for benchmarks, without a server: the loader writes the same one each time.
namespace FetchyardBench {

// A JPEG of 1280 by 720.
const std::string& Picture();
void WritePicture(const std::string& path);

}  // namespace FetchyardBench
