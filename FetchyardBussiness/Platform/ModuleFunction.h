#pragma once

#include <string>

namespace FetchyardBussiness::Platform {

// The address of a function that a loaded module exports under a plain name; null if there is none.
void* FindModuleFunction(void* module, const std::string& name);

}  // namespace FetchyardBussiness::Platform
