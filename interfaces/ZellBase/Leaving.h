#pragma once

#include "ZellBase/Export.h"

#include <memory>

// For objects that go with the statics of a process while threads may still be inside them: a thread that
// has work of the libraries to do is held back for good once the process leaves, and never lets go of a lock.
namespace Zell::Base::details {

// True from the moment at which the process begins to leave (exit, return from main). Any thread.
ZELLBASE_API bool IsProcessLeaving();
// Keeps an object that such a thread may still hold until the system ends the process.
ZELLBASE_API void KeepForGood(std::shared_ptr<void> object);

}  // namespace Zell::Base::details
