#pragma once

#include "ZellTaskKit/DownloadTypes.h"

namespace FetchyardLogical::details {

// 1 and 7: the first report of a run.
bool IsStartState(ZellTaskKit::DownloadState state);
// 4, 5, 6, 10, 11, 12 and 200: the last report of a run.
bool IsEndState(ZellTaskKit::DownloadState state);
// Whether the contract of tasks can produce the second state behind the first, within one run.
bool CanFollow(ZellTaskKit::DownloadState before, ZellTaskKit::DownloadState next);

}  // namespace FetchyardLogical::details
