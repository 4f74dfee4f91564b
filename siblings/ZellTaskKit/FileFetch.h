#pragma once

#include "ZellBase/Error.h"

#include <string>

namespace ZellTaskKit {

// Fetches the url into the file and gives the reason of a failure; (0, 0) when the file is whole and in
// place. Blocks the calling thread.
Zell::Base::Error::ErrorCode FetchFile(const std::string& url, const std::string& save_path);

}  // namespace ZellTaskKit
