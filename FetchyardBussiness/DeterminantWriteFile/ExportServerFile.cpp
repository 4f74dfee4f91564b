#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/DeterminantWriteFile/PdfWork.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/EvidenceExport.h"
#include "FetchyardBussiness/FileDownload/FileExportTask.h"
#include "FetchyardBussiness/Log.h"
#include "ZellBase/FileSystem.h"

namespace FetchyardBussiness {

namespace FileSystem = Zell::Base::FileSystem;
using FetchyardLogical::CmsGetExportFileData;

namespace {

constexpr int kMostPolls = 3599;  // about an hour

// A PDF comes as HTML.
std::string SuffixOfFetch(int export_file_type)
{
    return CExportReportDataToFileObject::GetFileSuffix(export_file_type == kPdfReport ? kHtmlReport
                                                                                       : export_file_type);
}

}  // namespace

// The server generates the report itself: it is waited for, and fetched when it is there.
bool CDeterminantWriteFileTask::FetchGeneratedFile(Run& run)
{
    run.Settings().is_server_data_to_write = false;
    if (!AwaitGeneratedFile(run))
        return false;
    LogInfo("server_genareate_node  file_is_created 11111111");
    if (DownloadFileFromServer())
        return true;
    // Most failures have been reported there already; the second report is part of the contract.
    Notify(run, ZellTaskKit::Failed);
    LogInfo("server_genareate_node  DownloadFileFromServer failed");
    return false;
}

bool CDeterminantWriteFileTask::AwaitGeneratedFile(Run& run)
{
    FetchyardLogical::ServerGenerateNode& server = data_condition_.export_data_node.server_genareate_node;
    if (server.file_is_created)
        return true;
    const char* name = run.Settings().str_export_file_name.c_str();
    LogInfo("data_condition_.export_data_node.server_genareate_node.file_is_created  file name: %s", name);
    bool created = false;
    const auto ask = [&server](bool& failed) {
        RequstData query;
        query.str_method = server.query_request.str_method;
        query.str_quern = server.query_request.str_quern;
        query.str_request = server.query_request.str_request;
        return CmsGetExportFileData::GetServerFileGenerateState(query, server.download_request,
                                                                server.delete_cache_request, failed);
    };
    if (!PollServer(kMostPolls, ask, created))
        return false;
    server.file_is_created = created;
    if (EndsAfterPolling(run, created))
        return false;
    LogInfo(
        "server_genareate_node  data_condition_.export_data_node.server_genareate_node.file_is_created  "
        "finished   file name: %s",
        name);
    return true;
}

bool CDeterminantWriteFileTask::DownloadFileFromServer()
{
    const auto param = GetDownloadTaskParam<DeterminantDownloadParam>();
    if (!param) {
        LogError("DownloadFileFromServer ptr_determinant_control_param is null!");
        return false;
    }
    LogInfo(
        "server_genareate_node data_condition_.export_data_node.server_genareate_node.file_is_created  ok   "
        "file name: %s, file guid: %s, file save path: %s.",
        param->GetVal_str_name().c_str(), param->GetVal_str_guid().c_str(),
        param->GetVal_str_file_path().c_str());
    const VsFileParam& settings = param->vs_file_param_;
    const std::string file_name = settings.str_export_file_name + SuffixOfFetch(settings.export_file_type);
    if (!FetchServerFile(*param, file_name))
        return false;
    DropServerFile(file_name);
    return settings.export_file_type != kPdfReport ||
           TurnHtmlIntoPdf(settings.str_export_file_path, file_name);
}

bool CDeterminantWriteFileTask::FetchServerFile(DeterminantDownloadParam& param, const std::string& file_name)
{
    const RequstData& download = data_condition_.export_data_node.server_genareate_node.download_request;
    const VsFileParam& settings = param.vs_file_param_;
    FileExportItem item;
    item.file_name = file_name;
    item.save_path = settings.str_export_file_path;
    item.request_method = download.str_method;
    item.request_url = download.str_quern;
    item.request_pattern = download.pattern;
    const auto file_param = std::make_shared<FileExportParam>();
    file_param->file_items.push_back(item);
    LogInfo("CFileExportTask file_export_task exe()  file name: %s", file_name.c_str());
    CFileExportTask file_export_task;
    file_export_task.SetNotifyState(false);
    file_export_task.SetDownloadTaskParam(file_param, false);
    file_export_task.Exec();
    if (file_export_task.GetExecResult())
        return true;
    LogInfo("CFileExportTask Exec result, file name: %s, file guid: %s, file save path: %s.",
            param.GetVal_str_name().c_str(), param.GetVal_str_guid().c_str(),
            param.GetVal_str_file_path().c_str());
    Zell::Base::Error::SetLastError(OwnError(kErrorExportData));
    RecordFailure(settings, file_name, OwnError(kErrorExportData));
    NotifyTaskState(StateOfExport(!param.str_evidence_param.empty(), ZellTaskKit::Failed));
    return false;
}

// A server that keeps its copy changes nothing here.
void CDeterminantWriteFileTask::DropServerFile(const std::string& file_name)
{
    const RequstData& delete_cache =
        data_condition_.export_data_node.server_genareate_node.delete_cache_request;
    RequstData request;
    request.str_method = delete_cache.str_method;
    request.str_quern = delete_cache.str_quern;
    request.str_request = delete_cache.str_request;
    const bool result = CmsGetExportFileData::NotifyServerDeleteCacheFile(request);
    LogInfo("NotifyServerDeleteCacheFile   result =%d   file name: %s", result, file_name.c_str());
}

// Whatever the tool makes of it, the export goes on; a missing PDF is seen in the log and on disk.
bool CDeterminantWriteFileTask::TurnHtmlIntoPdf(const std::string& folder, const std::string& html_name)
{
    const RequstData& download = data_condition_.export_data_node.server_genareate_node.download_request;
    const std::string html = folder + html_name;
    const std::string stem = html.substr(0, html.size() - SuffixOfFetch(kPdfReport).size());
    const std::string pdf = stem + CExportReportDataToFileObject::GetFileSuffix(kPdfReport);
    const PdfWork work = NewPdfWork();
    if (!MakePdfWorkFolder(work)) {
        LogError(
            "  CDeterminantWriteFileTask::DownloadFileFromServer create file path =%s  failed.  task failed",
            work.folder.c_str());
        return false;
    }
    RunPdfTool(work, html, download.pdf_page_size, download.pdf_page_orintation);
    LogInfo("pdf has been created!");
    FileSystem::DeleteFileW(work.html.c_str());
    FileSystem::DeleteFileW(html.c_str());
    const int copy_result = FileSystem::CopyFileW(work.pdf.c_str(), pdf.c_str(), 0);
    const int del_result = FileSystem::DeleteFileW(work.pdf.c_str());
    LogInfo(" determanatewritefiletask pdf has been created! pdf_path =%s   copy_result= %d  del_result = %d",
            pdf.c_str(), copy_result, del_result);
    return true;
}

}  // namespace FetchyardBussiness
