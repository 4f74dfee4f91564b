#pragma once

#include <ostream>
#include <string>

// How a process was started, as itself sees it. Texts are UTF-8.
namespace tools {

// A line "argument ..." for each argument behind the program's name and one "folder ..." for the working
// folder; on Windows also the whole command line and what the starter said about window and priority.
void WriteStart(std::ostream& out, int count, char** arguments);

// A variable of the environment; empty if it is not set.
std::string Variable(const char* name);

}  // namespace tools
