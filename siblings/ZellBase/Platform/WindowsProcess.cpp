#include "Platform/Process.h"

#include <corecrt_startup.h>

namespace Zell::Base::details {

// std::atexit of a DLL is served when the DLL is detached, after the system has ended all other threads;
// this list belongs to the process and is served before.
bool CallWhenLeaving(void (*handler)())
{
    return _crt_atexit(handler) == 0;
}

bool LocalTime(std::int64_t time, std::tm& broken_down)
{
    const auto system_time = static_cast<__time64_t>(time);
    return _localtime64_s(&broken_down, &system_time) == 0;
}

}  // namespace Zell::Base::details
