#pragma once

#include "ZellBase/Leaving.h"

namespace Zell::Base::details {

// Registers the exit handler if nobody has yet. Any thread.
void WatchProcessExit();

}  // namespace Zell::Base::details
