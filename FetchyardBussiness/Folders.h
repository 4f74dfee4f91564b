#pragma once

#include <string>

namespace FetchyardBussiness {

// Makes the folder and its parents if it is not there. False if that fails.
bool EnsureFolder(const std::string& folder);

}  // namespace FetchyardBussiness
