#include "Platform/Module.h"

#include <dlfcn.h>

namespace ZellClientHost {

void* LoadModule(const std::string& path, std::string& reason)
{
    // Only what is looked up by name is meant for others: symbols of two plug-ins must not meet.
    void* const module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (module == nullptr) {
        const char* const words = ::dlerror();
        reason = words != nullptr ? words : path + " can't be loaded";
    }
    return module;
}

void* FindFunction(void* module, const char* name)
{
    return ::dlsym(module, name);
}

}  // namespace ZellClientHost
