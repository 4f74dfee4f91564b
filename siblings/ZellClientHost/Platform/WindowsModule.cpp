#include "NQXHost/WideText.h"
#include "Platform/Module.h"

#include <windows.h>

namespace ZellClientHost {

void* LoadModule(const std::string& path, std::string& reason)
{
    const HMODULE module = ::LoadLibraryW(NQX_WideText(path).c_str());
    if (module == nullptr)
        reason = path + " can't be loaded, system error " + std::to_string(::GetLastError());
    return module;
}

void* FindFunction(void* module, const char* name)
{
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(module), name));
}

}  // namespace ZellClientHost
