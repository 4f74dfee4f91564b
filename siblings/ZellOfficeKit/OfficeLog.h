#pragma once

#include <string>

namespace ZellOfficeKit {

// One line at level 5 under this library's name, with the head and the tail that every line has.
void LogErrorLine(const char* function, const std::string& message, const char* file, int line);

}  // namespace ZellOfficeKit

#define OFFICE_LOG_ERROR(function, message) \
    ::ZellOfficeKit::LogErrorLine("ZellOfficeKit::" function, message, __FILE__, __LINE__)
