#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Log.h"

namespace FetchyardBussiness {

// This version can't fetch a report that the server generates itself: the export fails as one whose file
// could not be got.
bool CDeterminantWriteFileTask::FetchGeneratedFile(Run& run)
{
    VsFileParam& settings = run.Settings();
    settings.is_server_data_to_write = false;
    LogError("a report that the server generates itself is not served by this version");
    Zell::Base::Error::SetLastError(OwnError(kErrorExportData));
    RecordFailure(settings, settings.str_export_file_name, OwnError(kErrorExportData));
    Notify(run, ZellTaskKit::Failed);
    return false;
}

}  // namespace FetchyardBussiness
