#pragma once

#include "ZellBase/Export.h"

#include <string>

// The client's log, for the program that hosts the libraries.
namespace Zell::Base::details {

// Where lines go: a file (rotated at 10 MB, three kept) or, with an empty path, nowhere. Lines below the
// level are dropped before they are formatted. Any thread; before the first call only level 5 goes to
// standard error.
ZELLBASE_API bool SetLogFile(const std::string& path, int level);
// Returns when all lines so far are on disk.
ZELLBASE_API void FlushLog();

}  // namespace Zell::Base::details
