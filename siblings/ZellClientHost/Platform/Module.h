#pragma once

#include <string>

namespace ZellClientHost {

// Brings a module into the process, where it stays; null with the reason in words if that fails.
void* LoadModule(const std::string& path, std::string& reason);
// An exported function of it; null if there is none of that name.
void* FindFunction(void* module, const char* name);

}  // namespace ZellClientHost
