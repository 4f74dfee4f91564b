#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/EvidenceExport.h"
#include "FetchyardBussiness/Folders.h"
#include "FetchyardBussiness/Log.h"

namespace FetchyardBussiness {

void CDeterminantWriteFileTask::Exec()
{
    Reset();
    Run run;
    run.param = GetDownloadTaskParam<DeterminantDownloadParam>();
    if (!run.param) {
        NotifyTaskState(ZellTaskKit::Failed);
        LogError("Export param failed ");
        return;
    }
    if (!Begin(run))
        return;
    switch (run.Settings().file_operate_type) {
        case kReportExport:
            if (!ExportReport(run))
                return;
            break;
        case kForceLogExport:
            FetchForceLogs(run);
            return;
        case kDockStationExport:
            FetchDockStationFiles(run);
            break;
        default:
            break;
    }
    End(run);
}

// A second run finds the writers, the loaders, the failure codes and the failed-files text as they were.
void CDeterminantWriteFileTask::Reset()
{
    error_file_map.clear();
    b_stop_.store(false, std::memory_order_relaxed);
    b_delete_.store(false, std::memory_order_relaxed);
    data_condition_.export_data_node = ExportDataNode();
    server_side_.Publish(data_condition_.export_data_node);
    if (CExportReportDataToFileObject* writer = current_writer) {
        LogInfo("Exec set signal to write file b_stop_ =%d", IsStopped());
        writer->SetTaskStopState(IsStopped());
    }
}

bool CDeterminantWriteFileTask::Begin(Run& run)
{
    run.is_evidence = !run.param->str_evidence_param.empty();
    Notify(run, ZellTaskKit::Downloading);
    LogInfo("Start export.");
    if (!MakeExportFolder(run))
        return false;
    LogInfo("Start export , file name: %s, file guid: %s, file save path: %s.",
            run.param->GetVal_str_name().c_str(), run.param->GetVal_str_guid().c_str(),
            run.param->GetVal_str_file_path().c_str());
    FillRequest(run);
    return true;
}

bool CDeterminantWriteFileTask::MakeExportFolder(const Run& run)
{
    const std::string& folder = run.Settings().str_export_file_path;
    if (EnsureFolder(folder))
        return true;
    Zell::Base::Error::SetLastError(OwnError(kErrorFolder));
    Notify(run, ZellTaskKit::Failed);
    LogError(" create file path =%s  failed.  task failed", folder.c_str());
    return false;
}

void CDeterminantWriteFileTask::FillRequest(Run& run)
{
    const VsFileParam& settings = run.Settings();
    run.requset.str_method = settings.str_request_method;
    run.requset.str_quern = settings.str_request_api;
    run.requset.str_request = settings.str_request_condition;
    run.requset.site_id = settings.request_site_id;

    ExportDataNode& page = data_condition_.export_data_node;
    page.export_file_type = settings.export_file_type;
    page.pdf_page_size = settings.pdf_page_size;
    page.pdf_page_orintation = settings.pdf_page_orintation;
    page.file_name = settings.str_export_file_name;
    page.file_save_path = settings.str_export_file_path;
    page.work_station_id = static_cast<unsigned int>(settings.request_site_id);
}

bool CDeterminantWriteFileTask::ExportReport(Run& run)
{
    return FetchItems(run) && MoveOnFromLastRun(run) && ExportPages(run);
}

// Pictures first, then videos and stored objects.
bool CDeterminantWriteFileTask::FetchItems(Run& run)
{
    const ErrorCode code_now = Zell::Base::Error::GetLastError();
    if (!run.Settings().vec_image_download.empty()) {
        LogInfo("DownloadPictures code_now iFirstCode = %d  iSecondCode = %d", code_now.iFirstCode,
                code_now.iSecondCode);
        if (!DownloadPictures()) {
            NotifyTaskState(ZellTaskKit::Failed);
            LogError("DownloadPictures failed ");
            return false;
        }
    }
    if (!DownloadAllTypeVideo()) {
        // Reported there already; the second report is part of the contract.
        Notify(run, ZellTaskKit::Failed);
        LogError("DownloadPictures failed ");
        return false;
    }
    return true;
}

void CDeterminantWriteFileTask::Notify(const Run& run, ZellTaskKit::DownloadState state)
{
    NotifyTaskState(StateOfExport(run.is_evidence, state));
}

}  // namespace FetchyardBussiness
