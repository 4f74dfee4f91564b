#pragma once

#include "NQX/Export.h"

#include <filesystem>
#include <string>

// A UTF-8 path for the standard library and the system's calls. On Windows one that is long when it is whole
// comes in the form that has no limit of length, whatever the machine and the program say about long paths;
// elsewhere it stays as it is. Any thread.
NQX_API std::filesystem::path NQX_Path(const std::string& utf8);
