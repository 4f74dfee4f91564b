#include "Platform/Process.h"

#include <cstdlib>

namespace Zell::Base::details {

bool CallWhenLeaving(void (*handler)())
{
    return std::atexit(handler) == 0;
}

bool LocalTime(std::int64_t time, std::tm& broken_down)
{
    const auto system_time = static_cast<std::time_t>(time);
    return localtime_r(&system_time, &broken_down) != nullptr;
}

}  // namespace Zell::Base::details
