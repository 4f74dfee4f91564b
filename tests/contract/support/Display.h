#pragma once

namespace contract {

// What the display says from now on; stands in for the platform's source.
void SetDisplayDpi(unsigned int x, unsigned int y);

}  // namespace contract
