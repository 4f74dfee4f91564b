#pragma once

#include <cstdint>
#include <ctime>

namespace Zell::Base::details {

// Has handler called once when the process begins to leave, while its other threads still run.
bool CallWhenLeaving(void (*handler)());
// Broken-down local time; false if the year does not fit.
bool LocalTime(std::int64_t time, std::tm& broken_down);

}  // namespace Zell::Base::details
