#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/DeterminantWriteFile/PageRequest.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Log.h"

namespace FetchyardBussiness {

using FetchyardLogical::CmsGetExportFileData;
using Zell::Base::Error::SetLastError;

// A run after a stop or a failure asks for the page behind the one in hand; a workbook can't be taken up
// again and starts anew.
bool CDeterminantWriteFileTask::MoveOnFromLastRun(Run& run)
{
    VsFileParam& settings = run.Settings();
    if (!settings.restart_is_need_download || !settings.is_server_data_to_write ||
        run.requset.str_request.empty() || IsStopped() || IsDeleted())
        return true;
    if (run.requset.str_request.find(kPageIndexKey) == std::string::npos) {
        LogError("requset.str_request has no PageIndex, requset.str_request = %s",
                 run.requset.str_request.c_str());
        SetLastError(OwnError(kErrorBadInput));
        Notify(run, ZellTaskKit::Failed);
        return false;
    }
    if (settings.file_total_page_is_finished) {
        EndFinishedReport(run);
        return false;
    }
    if (settings.export_file_type == kExcelReport)
        settings.file_current_page = 1;
    else
        ++settings.file_current_page;
    run.requset.str_request = RewritePage(run.requset.str_request, settings.file_current_page);
    LogInfo(
        "Download ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = %d  "
        "requset.str_request = %s   requset.str_quern =%s",
        settings.file_total_page_is_finished, run.requset.str_request.c_str(), run.requset.str_quern.c_str());
    return true;
}

// Nothing is left to fetch, and nothing is packed.
void CDeterminantWriteFileTask::EndFinishedReport(Run& run)
{
    if (!RegisterEvidence(run))
        return;
    Notify(run, ZellTaskKit::Finished);
    LogInfo("Download export success, file name: %s, file guid: %s, file save path: %s.",
            run.param->GetVal_str_name().c_str(), run.param->GetVal_str_guid().c_str(),
            run.param->GetVal_str_file_path().c_str());
}

bool CDeterminantWriteFileTask::ExportPages(Run& run)
{
    VsFileParam& settings = run.Settings();
    LogInfo(
        "ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = %d, b_stop_ = %d, "
        "b_delete_ = %d",
        settings.file_total_page_is_finished, IsStopped(), IsDeleted());
    while (!run.requset.str_quern.empty() && !settings.file_total_page_is_finished && !IsStopped() &&
           !IsDeleted()) {
        const bool delivered = CmsGetExportFileData::GetExportFileDataList(data_condition_, run.requset);
        const ExportDataNode& page = data_condition_.export_data_node;
        server_side_.Publish(page);
        if (!delivered) {
            EndAfterFailedCall(run);
            return false;
        }
        LogInfo(
            "CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: %s, file guid: %s, file save "
            "path: %s.  data_condition_.export_data_node.is_rowcolumn_data =%d",
            run.param->GetVal_str_name().c_str(), run.param->GetVal_str_guid().c_str(),
            run.param->GetVal_str_file_path().c_str(), page.is_rowcolumn_data);
        if (!page.is_rowcolumn_data)
            return FetchGeneratedFile(run);
        if (!WritePage(run))
            return false;
        if (settings.file_total_page_is_finished) {
            LogInfo("all data has download finished. file = %s", settings.str_export_file_name.c_str());
            break;
        }
        AdvancePage(run);
    }
    return true;
}

bool CDeterminantWriteFileTask::WritePage(Run& run)
{
    VsFileParam& settings = run.Settings();
    ExportDataNode& page = data_condition_.export_data_node;
    if (page.vec_sheets.empty()) {
        LogError("CDeterminantWriteFileTask::Exec() data_condition_.export_data_node.vec_sheets.size() < 1");
        SetLastError(OwnError(kErrorBadInput));
        RecordFailure(settings, settings.str_export_file_name, data_condition_.error_code);
        Notify(run, ZellTaskKit::Failed);
        return false;
    }
    LogInfo(
        "CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node.file_total_page_is_finished = "
        "%d",
        page.file_total_page_is_finished);
    settings.file_total_page_is_finished = page.file_total_page_is_finished;
    settings.restart_is_need_download = !page.file_total_page_is_finished;
    if (page.file_save_path.empty())
        page.file_save_path = GetPdfExePath();
    const bool write_is_ok = WriteDataToFile(page);
    for (ExportSheet& sheet : page.vec_sheets)
        sheet.vec_rows.clear();
    LogInfo("CDeterminantWriteFileTask::Exec(): write_is_ok = %d", write_is_ok);
    if (write_is_ok)
        return true;
    // The wording is that of another failure; readers of the log know it so.
    LogError(
        " CDeterminantWriteFileTask::Exec() requset.str_request has no PageIndex, requset.str_request = %s",
        run.requset.str_request.c_str());
    SetLastError(OwnError(kErrorExportData));
    RecordFailure(settings, settings.str_export_file_name, OwnError(kErrorExportData));
    Notify(run, ZellTaskKit::Failed);
    return false;
}

void CDeterminantWriteFileTask::AdvancePage(Run& run)
{
    VsFileParam& settings = run.Settings();
    LogInfo(
        "CDeterminantWriteFileTask::Exec()  ptr_determinant_control_param->vs_file_param_.file_current_page "
        "= %d",
        settings.file_current_page);
    ++settings.file_current_page;
    run.requset.str_request = RewritePage(run.requset.str_request, settings.file_current_page);
}

// The writer is called once more, so that it closes what it has.
void CDeterminantWriteFileTask::EndAfterFailedCall(Run& run)
{
    VsFileParam& settings = run.Settings();
    LogError("CDeterminantWriteFileTask::Exec() ret = %d", 0);
    SetLastError(data_condition_.error_code);
    RecordFailure(settings, settings.str_export_file_name, data_condition_.error_code);
    Notify(run, ZellTaskKit::Failed);
    settings.restart_is_need_download = true;
    ExportDataNode& page = data_condition_.export_data_node;
    if (!page.is_rowcolumn_data)
        return;
    page.file_total_page_is_finished = true;
    WriteDataToFile(page);
}

bool CDeterminantWriteFileTask::WriteDataToFile(ExportDataNode& excel_data)
{
    auto entry = writer_map.find(excel_data.export_file_type);
    if (entry == writer_map.end()) {
        LogInfo("CDeterminantWriteFileTask::WriteDataToFile excel_data.export_file_type = %d",
                excel_data.export_file_type);
        entry = writer_map.emplace(excel_data.export_file_type, MakeReportWriter(excel_data.export_file_type))
                    .first;
    }
    CExportReportDataToFileObject* writer = entry->second.get();
    if (writer == nullptr) {
        LogInfo("CDeterminantWriteFileTask::WriteDataToFile return false");
        return false;
    }
    current_writer = writer;
    const bool written = writer->ExportDataToFile(excel_data);
    LogInfo("CDeterminantWriteFileTask::WriteDataToFile return = %d", written);
    return written;
}

}  // namespace FetchyardBussiness
