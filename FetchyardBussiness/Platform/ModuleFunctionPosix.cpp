#include "FetchyardBussiness/Platform/ModuleFunction.h"

#include <dlfcn.h>

namespace FetchyardBussiness::Platform {

void* FindModuleFunction(void* module, const std::string& name)
{
    return ::dlsym(module, name.c_str());
}

}  // namespace FetchyardBussiness::Platform
