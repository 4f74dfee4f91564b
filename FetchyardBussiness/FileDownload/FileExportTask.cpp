#include "FetchyardBussiness/FileDownload/FileExportTask.h"

#include "FetchyardBussiness/Folders.h"
#include "FetchyardBussiness/Log.h"
#include "NQX/NQX.h"
#include "ZellBase/FileSystem.h"
#include "ZellTaskKit/NetCommManager.h"

#include <string_view>

namespace FetchyardBussiness {

namespace FileSystem = Zell::Base::FileSystem;
using Zell::Base::Error::ErrorCode;
using Zell::Base::Error::SetLastError;

namespace {

constexpr unsigned long kFetchTimeout = 600000;  // milliseconds

// Blanks, tabs, line and form feeds alike.
std::string WithoutBlanks(const std::string& url)
{
    constexpr std::string_view blanks = " \t\n\v\f\r";
    std::string encoded;
    for (const char letter : url) {
        if (blanks.find(letter) == std::string_view::npos)
            encoded += letter;
        else
            encoded += "%20";
    }
    return encoded;
}

}  // namespace

void CFileExportTask::SetNotifyState(bool notify)
{
    notify_flag = notify;
}

bool CFileExportTask::GetExecResult() const
{
    return result_flag;
}

bool CFileExportTask::Stop()
{
    stop_flag = true;
    return true;
}

bool CFileExportTask::Suspend()
{
    stop_flag = true;
    return true;
}

ZellTaskKit::CDownloadProgress CFileExportTask::GetProgress()
{
    return {};
}

void CFileExportTask::Report(ZellTaskKit::DownloadState state)
{
    if (notify_flag)
        NotifyTaskState(state);
    else
        result_flag = state == ZellTaskKit::Finished;
}

void CFileExportTask::Exec()
{
    stop_flag = false;
    Report(ZellTaskKit::Downloading);
    LogInfo("Start export file.");
    const std::shared_ptr<FileExportParam> param = GetDownloadTaskParam<FileExportParam>();
    if (!param) {
        Report(ZellTaskKit::Failed);
        LogError("Export file failed. create file ptr failed. ");
        return;
    }
    LogInfo("Start export file, file name: %s, file guid: %s, file save path: %s.",
            param->GetVal_str_name().c_str(), param->GetVal_str_guid().c_str(),
            param->GetVal_str_file_path().c_str());
    for (const FileExportItem& item : param->file_items) {
        if (stop_flag) {
            ReportStopped(*param, ZellTaskKit::Stopped);
            return;
        }
        if (!ExportItem(*param, item))
            return;
    }
    LogInfo("download export file sucess, file name: %s, file guid: %s, file save path: %s.",
            param->GetVal_str_name().c_str(), param->GetVal_str_guid().c_str(),
            param->GetVal_str_file_path().c_str());
    Report(ZellTaskKit::Finished);
}

// The folder is looked at when the body has arrived.
bool CFileExportTask::ExportItem(const FileExportParam& param, const FileExportItem& item)
{
    std::string body;
    return Fetch(item, body) && MakeFolder(item.save_path) &&
           Write(param, item.save_path + item.file_name, body);
}

bool CFileExportTask::Fetch(const FileExportItem& item, std::string& body)
{
    auto send = std::make_shared<ZellNetLink::CClientSendContentTypeInfo>();
    send->SetVal_Method(item.request_method);
    send->SetVal_URL(item.request_url);
    send->SetVal_Request_Data(item.request_data);
    send->SetVal_send_data(item.send_data);
    send->SetVal_Pattern(item.request_pattern);
    send->SetVal_Query_Params(item.query_params);
    send->SetVal_Timeout(kFetchTimeout);
    send->SetVal_URL(WithoutBlanks(send->GetVal_URL()));
    auto recv = std::make_shared<ZellNetLink::CClientRecvInfo>();
    if (ZellTaskKit::CNetCommManager::Instance().ClientSynSend(recv, send, 0)) {
        body = recv->GetVal_Receive_Data();
        return true;
    }
    const ErrorCode error = recv->GetVal_Error_code();
    LogError("request download url[%s]failed, [MainError: %d],[SubError: %d]", item.request_url.c_str(),
             error.iFirstCode, error.iSecondCode);
    SetLastError(error);
    Report(ZellTaskKit::Failed);
    return false;
}

bool CFileExportTask::MakeFolder(const std::string& folder)
{
    if (EnsureFolder(folder))
        return true;
    const ErrorCode error(0, NQX_GetLastError());
    LogError("make dir failed. dir: %s", folder.c_str());
    SetLastError(error);
    Report(ZellTaskKit::Failed);
    return false;
}

bool CFileExportTask::Write(const FileExportParam& param, const std::string& path, const std::string& body)
{
    void* file = FileSystem::OpenFile(path.c_str(), FileSystem::kOpenAppend, FileSystem::kAttributesPlain);
    if (file == FileSystem::NoFile()) {
        const ErrorCode error(0, NQX_GetLastError());
        LogError("Open file[%s] failed.", path.c_str());
        SetLastError(error);
        Report(ZellTaskKit::Failed);
        return false;
    }
    // A stop that came during the fetch counts as a failure.
    if (stop_flag) {
        FileSystem::CloseFile(file);
        ReportStopped(param, ZellTaskKit::Failed);
        return false;
    }
    const char* bytes = body.data();
    if (bytes == nullptr) {
        FileSystem::CloseFile(file);
        LogError("Recevie data is empty, receive data: %s.", body.c_str());
        Report(ZellTaskKit::Failed);
        return false;
    }
    unsigned int written = 0;
    const auto size = static_cast<unsigned int>(body.size());
    const int result = FileSystem::WriteFile(file, const_cast<char*>(bytes), size, &written);
    FileSystem::CloseFile(file);
    if (result == 0)
        return true;
    LogError("Write data to file failed. file name: %s, receive data: %s.", path.c_str(), body.c_str());
    Report(ZellTaskKit::Failed);
    return false;
}

void CFileExportTask::ReportStopped(const FileExportParam& param, ZellTaskKit::DownloadState state)
{
    Report(state);
    LogWarning("Task has already been stopped. file name: %s.", param.GetVal_str_name().c_str());
}

}  // namespace FetchyardBussiness
