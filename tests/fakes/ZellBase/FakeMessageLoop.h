#pragma once

#include "ZellBase/Export.h"
#include "ZellBase/Task.h"

#include <memory>
#include <vector>

namespace fakes {

// The calls that were posted to the notification loop and that nobody has run: the fake has no thread.
ZELLBASE_API std::vector<std::unique_ptr<Zell::Base::CTask>> TakePosted();
// Runs them in order, on the calling thread.
ZELLBASE_API void RunPosted();

}  // namespace fakes
