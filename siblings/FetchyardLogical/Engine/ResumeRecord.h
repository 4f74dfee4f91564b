#pragma once

#include "Store/StoredTask.h"
#include "ZellTaskKit/DownloadTaskBase.h"

#include <string>

namespace FetchyardLogical::details {

// What the task's record writes out now; null if the task has no record, and the empty text if that has
// nothing to write. Only on the thread that hands the task over or runs it: a record may be read while it
// stands still.
ResumeTextPtr AskResumeText(ZellTaskKit::CDownloadTaskBase& task);
// Which record the text is.
RecordKind KindOfRecord(const std::string& resume_text);

}  // namespace FetchyardLogical::details
