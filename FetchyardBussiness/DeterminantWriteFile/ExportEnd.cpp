#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Log.h"
#include "ZellBase/Util.h"

namespace FetchyardBussiness {

void CDeterminantWriteFileTask::End(Run& run)
{
    if (EndByRequest(run))
        return;
    if (run.Settings().is_need_compress_zip)
        PackFolder(run);
    LogInfo("CDeterminantWriteFileTask::Exec() success ");
    if (!EndWithCollectedFailures(run)) {
        if (!RegisterEvidence(run))
            return;
        Notify(run, ZellTaskKit::Finished);
    }
    LogInfo("Download export result, file name: %s, file guid: %s, file save path: %s.",
            run.param->GetVal_str_name().c_str(), run.param->GetVal_str_guid().c_str(),
            run.param->GetVal_str_file_path().c_str());
}

// A delete wins over every other outcome. True if the run has ended.
bool CDeterminantWriteFileTask::EndByRequest(Run& run)
{
    const std::string name = run.param->GetVal_str_name();
    const std::string guid = run.param->GetVal_str_guid();
    const std::string path = run.param->GetVal_str_file_path();
    if (IsDeleted()) {
        LogInfo("Download delete success, file name: %s, file guid: %s, file save path: %s.", name.c_str(),
                guid.c_str(), path.c_str());
        Notify(run, ZellTaskKit::Deleted);
        return true;
    }
    if (IsStopped()) {
        data_condition_.export_data_node.vec_sheets.clear();
        Notify(run, ZellTaskKit::Stopped);
        LogInfo("Download stop success, file name: %s, file guid: %s, file save path: %s.", name.c_str(),
                guid.c_str(), path.c_str());
        return true;
    }
    return false;
}

// A failed archive does not fail the export.
void CDeterminantWriteFileTask::PackFolder(Run& run)
{
    const VsFileParam& settings = run.Settings();
    const std::string& path = settings.str_export_file_path;
    LogInfo(" begin to  compress, file name: %s, file save path: %s.", settings.str_export_file_name.c_str(),
            path.c_str());
    if (!Zell::Base::IsUtf8(path))
        LogInfo(" file name is utf8  file = %s.", path.c_str());
    const bool state = DoCompressWork(settings.str_export_file_name, path, settings.str_zip_password);
    LogInfo("CDeterminantWriteFileTask:: DoCompressWork  state = %d ", state);
}

// True if items failed, and the end has been reported. One failed item gives its own code.
bool CDeterminantWriteFileTask::EndWithCollectedFailures(Run& run)
{
    if (!run.Settings().is_continue_dowinloading || error_file_map.empty())
        return false;
    ErrorCode error = OwnError(kErrorFetch);
    if (error_file_map.size() == 1 && !error_code_map.empty())
        error = ErrorCode(2, error_code_map.begin()->second, error_code_map.begin()->first);
    Zell::Base::Error::SetLastError(error);
    Notify(run, ZellTaskKit::Failed);
    return true;
}

// Nothing to do for an export without an evidence target.
bool CDeterminantWriteFileTask::RegisterEvidence(Run& run)
{
    if (!run.is_evidence)
        return true;
    std::string search_xml;
    if (!UploadFilesToEvidence(run.param->str_evidence_param, search_xml)) {
        NotifyTaskState(ZellTaskKit::UploadFailed);
        LogError("upload files to evidence failed.");
        return false;
    }
    run.param->SetVal_str_search_xml(search_xml);
    return true;
}

}  // namespace FetchyardBussiness
