#pragma once

#include "LibraryHost.h"

#include <string>

namespace FetchyardClient {

// Exports events of a seeded station in several forms into a folder, and says what came of it.
int DemoCommand(const HostOptions& options, const std::string& out_folder);

}  // namespace FetchyardClient
