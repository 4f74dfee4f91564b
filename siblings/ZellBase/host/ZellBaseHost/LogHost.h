#pragma once

#include "ZellBase/Export.h"

#include <functional>
#include <string>

// The client's log, for the program that hosts the libraries.
namespace Zell::Base::details {

// Where lines go: a file (rotated at 10 MB, three kept) or, with an empty path, nowhere. Lines below the
// level are dropped before they are formatted. Any thread; before the first call only level 5 goes to
// standard error.
ZELLBASE_API bool SetLogFile(const std::string& path, int level);
// Who also hears the lines, on the thread that writes them: those that the file gets, and every line of level
// 5. When the call returns, the former listener hears nothing any more. A listener must not log, wait or
// sleep. An empty
// function ends it.
using LogListener = std::function<void(int level, const std::string& module, const std::string& text)>;
ZELLBASE_API void SetLogListener(LogListener listener);
// Returns when all lines so far are on disk.
ZELLBASE_API void FlushLog();

}  // namespace Zell::Base::details
