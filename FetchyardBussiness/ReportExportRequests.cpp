#include "FetchyardBussiness/ReportExportRequests.h"

#include "FetchyardBussiness/AccountRequest.h"
#include "FetchyardBussiness/Config/BussinessConfigMananger.h"
#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportObject.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/PluginNames.h"
#include "FetchyardBussiness/TaskDispatch.h"
#include "ZellBase/Util.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QDateTime>
#include <QDir>

#include <ctime>
#include <new>

namespace FetchyardBussiness {

namespace details {

using ZellTaskKit::CDownloadTaskBase;

bool FolderExists(const std::string& folder)
{
    return QDir(ZellWidgets::StringToQString(folder, nullptr)).exists();
}

bool MakeFolder(const std::string& folder)
{
    return QDir().mkpath(ZellWidgets::StringToQString(folder, nullptr));
}

std::string GeneratedName()
{
    return "ExportFile_" + Zell::Base::TimeUtil::TimeT2StrShortDatetime(std::time(nullptr));
}

void MakeTaskFolder(std::string& folder)
{
    if (!FolderExists(folder)) {
        const bool made = MakeFolder(folder);
        LogInfo(" CDownloadBussinessManager::AddDownloadCommTask dir.mkpath state = %d, save_path = %s  ",
                made, folder.c_str());
    }
    QString path = ZellWidgets::StringToQString(folder, nullptr);
    path.replace("\\", "/", Qt::CaseSensitive);
    folder = ZellWidgets::QStringToString(path, nullptr);
}

void FillTaskFields(int purpose, const std::string& name, const std::string& folder,
                    ZellTaskKit::CDownloadTaskParam& record)
{
    record.SetVal_state(purpose == kEvidencePurpose ? ZellTaskKit::Uploading : ZellTaskKit::Downloading);
    record.SetVal_str_name(name);
    record.SetVal_str_file_path(folder);
    record.SetVal_str_resume_xml("");
    record.SetVal_open_type(ZellTaskKit::OpenFolder);
    record.SetVal_str_plugin_id(fetchyard_plugin::kId);
    record.SetVal_operate_time(QDateTime::currentSecsSinceEpoch());
    record.SetVal_file_size(0);
    record.SetVal_b_enable_percent(false);
    record.SetVal_b_enable_speed(false);
    record.SetVal_b_enable_remain_time(false);
    record.SetVal_b_enable_size(true);
}

namespace {

constexpr std::size_t kLongestPath = 259;
constexpr std::size_t kKeptTail = 23;

void ReadDeviceFiles(const RequestReader& server_request, VsFileParam& settings)
{
    const int count = server_request.Count("DeviceIdList");
    for (int number = 1; number <= count; ++number) {
        const RequestReader file = server_request.Element("DeviceIdList", number);
        const int device = file.Number("DeviceId");
        const int file_id = file.Number("FileID");
        settings.map_device_log.emplace(file_id, std::make_pair(device, file.Text("FileName")));
    }
}

void ReadServerRequest(const RequestReader& data, VsFileParam& settings)
{
    const RequestReader request = data.Below("ExportFileParam");
    settings.str_request_method = request.Text("RequestMethod");
    settings.str_request_api = request.Text("RequestAPI");
    settings.str_request_condition = request.Text("RequestCondition");
    ReadCheckPassword(request, CheckPasswordOf(settings));
    const int site = request.Number("SiteID");
    settings.request_site_id = site < 0 ? 0 : site;
    ReadDeviceFiles(request, settings);
}

// Returns the request's "FolderName".
std::string ReadReportFile(const RequestReader& data, VsFileParam& settings)
{
    const RequestReader file = data.Below("WriteFileCondition");
    settings.str_export_file_name = file.Text("ExportFileName");
    settings.str_export_file_path = file.Text("SaveFilePathDir");
    settings.export_file_type = file.Number("ExportFileType");
    settings.pdf_page_size = file.Text("PdfPageSize");
    settings.pdf_page_orintation = file.Number("PdfPageOrientaion");
    settings.is_need_compress_zip = file.Flag("IsNeedCompressZip");
    settings.str_zip_password = file.Text("ZipPassword");
    std::string folder = file.Text("FolderName");
    settings.is_continue_dowinloading = data.Flag("IsContinueDowinloading");
    LogInfo(
        " CDownloadBussinessManager::AddDownloadCommTask  RequestData/IsContinueDowinloading = %d  "
        "export_file_type =%d,pdf_page_size =%s,pdf_page_orintation=%d",
        settings.is_continue_dowinloading, settings.export_file_type, settings.pdf_page_size.c_str(),
        settings.pdf_page_orintation);
    if (settings.export_file_type == RequestReader::kAbsent)
        settings.export_file_type = kExcelReport;
    return folder;
}

// Shortens a report name to its head and its tail. The arithmetic is unsigned: a save path that leaves no
// room wraps, so that the head covers the whole name, and a name shorter than the tail throws
// std::out_of_range.
std::string ShortenName(const std::string& name, std::size_t save_path_length, std::size_t suffix_length)
{
    const std::size_t room = kLongestPath - save_path_length - kKeptTail - suffix_length;
    const auto head = static_cast<std::size_t>(static_cast<double>(room) / 2.0);
    return name.substr(0, head) + name.substr(name.size() - kKeptTail);
}

// Names go to the file system as they stand: nothing is cleaned.
void SettleNames(std::string folder, VsFileParam& settings)
{
    std::string& name = settings.str_export_file_name;
    if (name.empty())
        name = GeneratedName();
    LogInfo(" CDownloadBussinessManager::AddDownloadCommTask  save_path = %s   folder_name = %s",
            settings.str_export_file_path.c_str(), folder.c_str());
    std::string save_path = settings.str_export_file_path;
    if (save_path.empty())
        save_path = CBussinessConfigMananger::Instance().GetSavePath();
    if (folder.empty())
        folder = name;
    const std::string suffix = CExportReportDataToFileObject::GetFileSuffix(settings.export_file_type);
    const std::string full = save_path + folder + "/" + name + suffix;
    if (full.size() > kLongestPath) {
        name = ShortenName(name, save_path.size(), suffix.size());
        folder = name;
    }
    settings.str_export_file_path = save_path + folder + "/";
    MakeTaskFolder(settings.str_export_file_path);
}

std::shared_ptr<CDownloadTaskBase> MakeExportTask(int type, int purpose, const RequestReader& request,
                                                  ZellNetLink::CRapidJsonProto& document)
{
    const std::shared_ptr<DeterminantDownloadParam> record(new (std::nothrow) DeterminantDownloadParam);
    if (!record) {
        LogError("Convert DeterminantDownloadParam ptr failed.");
        return nullptr;
    }
    VsFileParam& settings = record->vs_file_param_;
    settings.file_operate_type = type;
    const RequestReader data = request.Below("RequestData");
    ReadServerRequest(data, settings);
    SettleNames(ReadReportFile(data, settings), settings);
    ReadPictures(data, settings);
    ReadVideos(data, settings);
    ReadStoredObjects(data, settings);
    FillTaskFields(purpose, settings.str_export_file_name, settings.str_export_file_path, *record);
    record->SetIsExportSensitiveInfo(settings.check_password_request);
    if (purpose == kEvidencePurpose)
        record->str_evidence_param = document.get_node_str("/EvidenceParam", 0);
    auto task = std::make_shared<CDeterminantWriteFileTask>();
    task->SetDownloadTaskParam(record, false);
    return task;
}

std::shared_ptr<CDownloadTaskBase> MakeCommTask(const std::string& text)
{
    ZellNetLink::CRapidJsonProto document;
    if (!document.set_str(text)) {
        LogError(" CDownloadBussinessManager::AddDownloadCommTask json failed. json = %s", text.c_str());
        return nullptr;
    }
    const int purpose = document.get_int_v("/FileExportPurpose", 0);
    const RequestReader request(document, "/FileExportRequest/");
    int type = request.Number("FileExportType");
    if (!request.Text("PersonExportPicNode/ZipEncodingPassword").empty())
        type = kPersonPictureExport;
    switch (type) {
        case kReportExport:
        case kForceLogExport:
        case kDockStationExport:
            return MakeExportTask(type, purpose, request, document);
        case kPersonPictureExport:
            return MakePersonPictureTask(purpose, request, document);
        default:
            return nullptr;
    }
}

}  // namespace

}  // namespace details

bool CDownloadBussinessManager::AddDownloadCommTask(std::vector<std::string>& task_guids,
                                                    const std::vector<std::string>& requests)
{
    std::vector<std::shared_ptr<ZellTaskKit::CDownloadTaskBase>> batch;
    for (const std::string& request : requests) {
        const std::shared_ptr<ZellTaskKit::CDownloadTaskBase> task = details::MakeCommTask(request);
        if (!task)
            continue;
        task_guids.push_back(task->GetGuid());
        batch.push_back(task);
    }
    if (batch.empty()) {
        LogError(" CDownloadBussinessManager::AddDownloadCommTask  process task failed!");
        return false;
    }
    // A progress line, at the level at which this system has always written it.
    LogError(" CDownloadBussinessManager::AddDownloadCommTask  begin process task!");
    return details::DispatchTasks(batch);
}

}  // namespace FetchyardBussiness
