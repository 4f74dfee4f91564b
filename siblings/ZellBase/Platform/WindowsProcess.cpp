#include "Platform/Process.h"

#include <stdlib.h>

#if defined(__MINGW32__) && !defined(_UCRT)

// This runtime has one list for the process; std::atexit of a DLL keeps its own.
bool Zell::Base::details::CallWhenLeaving(void (*handler)())
{
    return _onexit(reinterpret_cast<_onexit_t>(handler)) != nullptr;
}

#else

#include <corecrt_startup.h>

// std::atexit of a DLL is served when the DLL is detached, after the system has ended all other threads;
// this list belongs to the process and is served before.
bool Zell::Base::details::CallWhenLeaving(void (*handler)())
{
    return _crt_atexit(handler) == 0;
}

#endif

namespace Zell::Base::details {

bool LocalTime(std::int64_t time, std::tm& broken_down)
{
    const auto system_time = static_cast<__time64_t>(time);
    return _localtime64_s(&broken_down, &system_time) == 0;
}

}  // namespace Zell::Base::details
