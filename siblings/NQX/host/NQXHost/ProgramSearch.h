#pragma once

#include "NQX/Export.h"

#include <string>

// Which file a start of the named program would run; empty if there is none, or, for a name that is a path,
// the name itself. A plain name is looked for in the working directory as it stands first. If it is not
// there, POSIX drops a final ".exe" and goes through the program search path; Windows leaves the search to
// the system and gives the name back. UTF-8. Any thread.
NQX_API std::string NQX_FindProgram(const std::string& name);
