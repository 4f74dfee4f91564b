#pragma once

#include "ExpectedFiles.h"

#include <string>

namespace FetchyardClient {

// Whether a file is there and opens as what its suffix, or the request, says: archives and workbooks are read
// through by the archiver, the others by their first bytes. Returns an empty text, or what is wrong in words.
std::string WhyItDoesNotOpen(const ExpectedFile& file);

}  // namespace FetchyardClient
