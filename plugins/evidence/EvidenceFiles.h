#pragma once

#include "ZellBase/Error.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Evidence {

// One file as it was when it was registered.
struct FileMark
{
    std::string name;  // path below the folder, with "/"
    std::uint64_t bytes = 0;
    std::string sha256;  // 64 hexadecimal digits
};

// The files of a folder and of those below it, in the order of their names. Returns (0, 0), or the system's
// error for the first that can't be read.
Zell::Base::Error::ErrorCode MarkFiles(const std::string& folder, std::vector<FileMark>& marks);

}  // namespace Evidence
