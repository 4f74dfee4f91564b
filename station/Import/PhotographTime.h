#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace Station {

// When the photograph was taken, as its camera wrote it (EXIF); nothing if it does not say.
std::optional<std::int64_t> TimeFromExif(const std::string& bytes);
// When the file was last written; 0 if that is not known.
std::int64_t TimeFromFile(const std::filesystem::path& file);

}  // namespace Station
