#pragma once

#include "station/Data/Store.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// What docking devices took off the cameras that people wear: pictures, videos, sound, lists.
namespace Station {

struct DockFile
{
    std::int64_t device = 0;  // from 1
    std::int64_t id = 0;      // from 1, one for each file of the site
    std::string name;
    std::int64_t time = 0;  // of the recording, seconds since 1970, UTC
};

// Makes the table if it is not there. Throws StoreError, as do the others.
void EnsureDockFiles(Database& database);
void AddDockFile(Database& database, const DockFile& file);
// By device and number.
std::vector<DockFile> AllDockFiles(Database& database);
std::optional<DockFile> FindDockFile(Database& database, std::int64_t device, std::int64_t id);

// Where the bytes of the files lie; each has its number for a name.
std::filesystem::path DockFolder(const std::filesystem::path& data);
std::filesystem::path PathOf(const std::filesystem::path& data, const DockFile& file);
std::string ContentTypeOf(const DockFile& file);

}  // namespace Station
