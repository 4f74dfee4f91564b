#include "FetchyardBussiness/Platform/ModuleFunction.h"

#include <windows.h>

namespace FetchyardBussiness::Platform {

void* FindModuleFunction(void* module, const std::string& name)
{
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(module), name.c_str()));
}

}  // namespace FetchyardBussiness::Platform
