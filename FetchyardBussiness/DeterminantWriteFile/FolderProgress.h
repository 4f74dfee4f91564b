#pragma once

#include "ZellTaskKit/DownloadProgress.h"

#include <string>

namespace FetchyardBussiness {

// Sums up the files below a folder, each rounded up to whole kilobytes. False, with the progress as it was,
// if there is no such folder.
bool AddFolderProgress(const std::string& folder, ZellTaskKit::CDownloadProgress& progress);

}  // namespace FetchyardBussiness
