#pragma once

#include <string>

namespace FetchyardBussiness::Platform {

// Runs wkhtmltopdf with a command line that does not hold its name, without a window and at low priority, and
// waits for its end without a limit. Its exit code is not looked at. False if it can't be started.
//
// On Windows it is "./wkhtmltopdf.exe", from the working directory. On POSIX it is the installed one: the
// line is split into its arguments as the C runtime of Windows does it (blanks and tabs separate, double
// quotes group, backslashes escape only in front of a double quote), it is a process group of its own with
// the null device on its standard streams, and it needs no display.
bool RunHtmlTool(const std::string& command_line);

}  // namespace FetchyardBussiness::Platform
