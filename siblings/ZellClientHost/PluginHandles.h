#pragma once

#include <string>

namespace ZellClientHost {

// The handle that was made known under the id; null if there is none.
void* FindPluginHandle(const std::string& plugin_id);

}  // namespace ZellClientHost
