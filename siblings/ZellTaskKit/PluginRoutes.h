#pragma once

#include "ZellTaskKit/PluginComm.h"

#include <memory>
#include <string>

namespace ZellTaskKit {

// Passes the request to the handler of the path and gives what it returns; is_served is false, and so is the
// result, if there is none.
bool CallRoute(const std::string& path, std::shared_ptr<CPluginCommData>& response,
               const std::shared_ptr<CPluginCommData>& request, bool& is_served);

}  // namespace ZellTaskKit
