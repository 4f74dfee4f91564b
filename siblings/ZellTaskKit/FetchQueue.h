#pragma once

#include <functional>

namespace ZellTaskKit {

// Runs the job on one of a few threads of this library, in the order of the calls. They are never joined: a
// process may leave while they work.
void RunOnFetchThread(std::function<void()> job);

}  // namespace ZellTaskKit
