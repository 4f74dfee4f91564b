#pragma once

#include <string>

// The outside archiver 7-Zip, expected as "7za.exe" in the working directory (on POSIX also in the program
// search path, without the suffix).
namespace Compress {

enum CompressResult : int {
    kDone = 1,
    kArchiverMissing = 2,
    kArchiverFailed = 4,
};

// Packs what lies in the folder into a zip and waits for the end; a zip that is there gets the files added.
// An empty password means none. Nothing is escaped: a double quote in an argument breaks the command line.
int CompressFolder(std::string zip_path, std::string folder, const std::string& password);

}  // namespace Compress
