#pragma once

#include "ZellTaskKit/DownloadProgress.h"

#include <functional>
#include <string>

namespace FetchyardBussiness {

// How often a file counts, by its path.
using FileWeight = std::function<unsigned int(const std::string& path)>;

// Sums up the files below a folder, each rounded up to whole kilobytes; without a weight each counts once.
// False, with the progress as it was, if there is no such folder.
bool AddFolderProgress(const std::string& folder, ZellTaskKit::CDownloadProgress& progress,
                       const FileWeight& weight = {});

}  // namespace FetchyardBussiness
