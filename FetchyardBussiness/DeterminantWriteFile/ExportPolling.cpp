#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Log.h"
#include "ZellTaskKit/ClientServices.h"

namespace FetchyardBussiness {

namespace {

constexpr unsigned long kPollPause = 1000;  // milliseconds

}

// Asks the server once a second until it says that the files are there, or a flag is up.
bool CDeterminantWriteFileTask::PollServer(int most_polls, const std::function<bool(bool&)>& ask, bool& ready)
{
    for (int remaining = most_polls; !ready && remaining > 0; --remaining) {
        if (IsStopped() || IsDeleted())
            break;
        ZellTaskKit::ZC_Sleep(kPollPause);
        bool failed = false;
        ready = ask(failed);
        if (failed) {
            // Five for an evidence export too.
            NotifyTaskState(ZellTaskKit::Failed);
            return false;
        }
    }
    return true;
}

// True if the run is over: deleted, stopped, or the server has not come to an end.
bool CDeterminantWriteFileTask::EndsAfterPolling(Run& run, bool ready)
{
    const std::string name = run.param->GetVal_str_name();
    const std::string guid = run.param->GetVal_str_guid();
    const std::string path = run.param->GetVal_str_file_path();
    if (IsDeleted()) {
        LogInfo(
            "Download delete success, server_genareate_node b_delete_ file name: %s, file guid: %s, file "
            "save path: %s.",
            name.c_str(), guid.c_str(), path.c_str());
        Notify(run, ZellTaskKit::Deleted);
        return true;
    }
    if (IsStopped()) {
        Notify(run, ZellTaskKit::Stopped);
        LogInfo(
            "Download stop success, server_genareate_node  b_stop_ file name: %s, file guid: %s, file save "
            "path: %s.",
            name.c_str(), guid.c_str(), path.c_str());
        return true;
    }
    if (ready)
        return false;
    LogInfo("CDeterminantWriteFileTask::Exec() server_genareate_node  failed     file name: %s",
            guid.c_str());
    Zell::Base::Error::SetLastError(OwnError(kErrorServerGenerate));
    RecordFailure(run.Settings(), run.Settings().str_export_file_name, OwnError(kErrorServerGenerate));
    Notify(run, ZellTaskKit::Failed);
    return true;
}

}  // namespace FetchyardBussiness
