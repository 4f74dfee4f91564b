#pragma once

#include "ZellClientHost/Export.h"

#include <string>

// How the program that hosts the libraries brings plug-ins into the process. Any thread, but never from
// inside the two functions of a plug-in that are called here.
namespace ZellClientHost {

// Loads the module of a plug-in and makes it known under its id. If the module exports "bool StartPlugin()"
// with C linkage, that is called before anybody can find the plug-in: there it registers the interface paths
// that it serves. An id that is known already is left as it is, and the result is true. False, with the
// reason in words, if the module can't be loaded or does not want to start.
ZELLCLIENTHOST_API bool LoadPlugin(const std::string& plugin_id, const std::string& module_path,
                                   std::string& reason);
// Forgets the plug-in and calls its exported "void StopPlugin()", if there is one. The module stays in memory
// to the end of the process, since nobody knows who still holds one of its functions; it can be started again
// with LoadPlugin. False if the id is not known.
ZELLCLIENTHOST_API bool StopPlugin(const std::string& plugin_id);

}  // namespace ZellClientHost
