#pragma once

#include "ZellBase/Export.h"

namespace Zell::Base::details {

// Levels: 3 information, 4 warning, 5 error.
inline constexpr int kLogInfo = 3;
inline constexpr int kLogWarning = 4;
inline constexpr int kLogError = 5;

// Writes one line to the client's log. module names the library that speaks. Any thread; returns without
// waiting for the disk. A null text for %s shows as "(null)".
ZELLBASE_API void IOXTFormatLog(int level, const char* module, const char* format, ...) ZELL_PRINTF(3, 4);

}  // namespace Zell::Base::details
