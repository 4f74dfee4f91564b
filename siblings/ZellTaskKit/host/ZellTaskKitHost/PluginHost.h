#pragma once

#include "ZellTaskKit/Export.h"
#include "ZellTaskKit/PluginComm.h"

#include <functional>
#include <memory>
#include <string>

// How plug-ins of this process offer the interface paths that CPluginCommManager serves. Any thread.
namespace ZellTaskKit {

// Serves one request, on the thread that sends it; several may come at the same time. False: the request
// failed. A handler that returns true and leaves the response empty has answered with an empty text.
using PluginHandler = std::function<bool(std::shared_ptr<CPluginCommData>& response,
                                         const std::shared_ptr<CPluginCommData>& request)>;

// Registers who serves the path, such as "/API/ClipVault/V0/DownloadVideoFiles". False if the path is empty,
// the handler is empty, or somebody serves it already.
ZELLTASKKIT_API bool RegisterInterface(const std::string& path, PluginHandler handler);
// Ends that, and returns when no other thread is inside the handler, so that its module may be unloaded.
// False if nobody serves the path.
ZELLTASKKIT_API bool UnregisterInterface(const std::string& path);

}  // namespace ZellTaskKit
