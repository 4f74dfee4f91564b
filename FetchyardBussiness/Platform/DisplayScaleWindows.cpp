#include "FetchyardBussiness/Platform/DisplayScale.h"

#include <windows.h>

namespace FetchyardBussiness::Platform {

namespace {

constexpr int kEffectiveDpi = 0;

using GetDpiForMonitorFunction = HRESULT(WINAPI*)(HMONITOR, int, UINT*, UINT*);

}  // namespace

// The function is not part of every Windows, so it is looked up; the module stays loaded.
DisplayDpi PrimaryDisplayDpi()
{
    DisplayDpi dpi;
    const HMODULE module = LoadLibraryW(L"SHCore.dll");
    if (module == nullptr)
        return dpi;
    const auto get_dpi = reinterpret_cast<GetDpiForMonitorFunction>(
        reinterpret_cast<void*>(GetProcAddress(module, "GetDpiForMonitor")));
    if (get_dpi == nullptr)
        return dpi;
    UINT x = 0;
    UINT y = 0;
    get_dpi(MonitorFromWindow(GetDesktopWindow(), MONITOR_DEFAULTTONEAREST), kEffectiveDpi, &x, &y);
    dpi.x = x;
    dpi.y = y;
    return dpi;
}

}  // namespace FetchyardBussiness::Platform
