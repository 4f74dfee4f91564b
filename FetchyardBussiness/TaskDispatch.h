#pragma once

#include "ZellTaskKit/DownloadTaskBase.h"

#include <memory>
#include <vector>

namespace FetchyardBussiness::details {

// The one way by which new tasks reach the engine. The parallel limit is worked out anew from the tasks that
// the engine already holds: 1 while an unfinished export stamps a video, 5 otherwise. Returns what the engine
// says of the batch.
bool DispatchTasks(const std::vector<std::shared_ptr<ZellTaskKit::CDownloadTaskBase>>& tasks);

}  // namespace FetchyardBussiness::details
