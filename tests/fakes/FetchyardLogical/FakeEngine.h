#pragma once

#include "FetchyardLogical/DownloadTaskManager.h"

#include <string>

namespace fakes {

// What the engine would do with the manager: report states to its observers, ask for the text of an error.
FETCHYARDLOGICAL_API void ReportFromEngine(
    const FetchyardLogical::CDownloadTaskManagerObserver::Param& reports);
FETCHYARDLOGICAL_API std::string TextFromCallback(const Zell::Base::Error::ErrorCode& error);

}  // namespace fakes
