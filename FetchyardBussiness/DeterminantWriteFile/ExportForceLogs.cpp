#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Log.h"

namespace FetchyardBussiness {

// This version can't ask a server to gather its logs: the export fails as one whose logs could not be got.
void CDeterminantWriteFileTask::FetchForceLogs(Run& run)
{
    LogError("an export of server logs is not served by this version");
    Zell::Base::Error::SetLastError(OwnError(kErrorExportData));
    Notify(run, ZellTaskKit::Failed);
}

}  // namespace FetchyardBussiness
