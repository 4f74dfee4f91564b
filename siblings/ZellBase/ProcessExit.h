#pragma once

namespace Zell::Base::details {

// Registers the exit handler if nobody has yet. Any thread.
void WatchProcessExit();
// Whether the exit handler has been called.
bool IsProcessLeaving();

}  // namespace Zell::Base::details
