#pragma once

#include "ZellBase/Export.h"

#include <cstdarg>
#include <cstddef>
#include <string>

namespace Zell::Base::details {

// A longer text is cut here, and "..." put behind it: one argument can be a whole page of a report.
inline constexpr std::size_t kLongestLogText = std::size_t{64} * 1024;

// The text of a log line; line feeds and carriage returns show as "\n" and "\r", so that it stays one line.
std::string FormatLogText(const char* format, std::va_list arguments) ZELL_PRINTF(1, 0);

}  // namespace Zell::Base::details
