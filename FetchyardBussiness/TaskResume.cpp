#include "FetchyardBussiness/Config/BussinessConfigMananger.h"
#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/DeterminantWriteFile/DownloadPersonPicTask.h"
#include "FetchyardBussiness/DeterminantWriteFile/ResumeDocument.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/PluginNames.h"
#include "FetchyardBussiness/ReportExportRequests.h"
#include "FetchyardBussiness/TranscodingTask/TranscodingTask.h"

#include <QDateTime>

#include <new>

namespace FetchyardBussiness {

namespace details {

using ZellTaskKit::CDownloadTaskBase;
using ZellTaskKit::CDownloadTaskParam;

namespace {

// A new record with what the text says; null, with a line in the log, if there is no such record.
template <typename Record>
std::shared_ptr<Record> ReadRecord(const std::string& resume_xml, const char* class_in_log)
{
    std::shared_ptr<Record> record(new (std::nothrow) Record);
    if (!record) {
        LogError("Convert %s ptr failed.", class_in_log);
        return nullptr;
    }
    record->SetVal_str_resume_xml(resume_xml);
    if (!record->ResumeParamFromXml()) {
        LogError("Resume xml failed.");
        return nullptr;
    }
    return record;
}

// What the task list shows of every resumed task.
void FillResumedFields(CDownloadTaskParam& record)
{
    record.SetVal_open_type(ZellTaskKit::OpenFolder);
    record.SetVal_str_plugin_id(fetchyard_plugin::kId);
    record.SetVal_operate_time(QDateTime::currentSecsSinceEpoch());
    record.SetVal_file_size(0);
}

template <typename Task>
std::shared_ptr<CDownloadTaskBase> MakeTask(const std::shared_ptr<CDownloadTaskParam>& record)
{
    auto task = std::make_shared<Task>();
    task->SetDownloadTaskParam(record, false);
    return task;
}

std::string FolderOf(const std::string& name)
{
    return CBussinessConfigMananger::Instance().GetSavePath() + name + "/";
}

std::shared_ptr<CDownloadTaskBase> ResumeCompositeExport(const std::string& resume_xml)
{
    const auto record = ReadRecord<DeterminantDownloadParam>(resume_xml, "DeterminantDownloadParam");
    if (!record)
        return nullptr;
    VsFileParam& settings = record->vs_file_param_;
    if (settings.str_export_file_name.empty())
        settings.str_export_file_name = GeneratedName();
    LogInfo(" CDownloadBussinessManager::ResumeDownloadTask  save_path = %s",
            settings.str_export_file_path.c_str());
    if (settings.str_export_file_path.empty())
        settings.str_export_file_path = FolderOf(settings.str_export_file_name);
    record->SetVal_state(ZellTaskKit::Downloading);
    FillResumedFields(*record);
    // The size is switched off and on again where others switch the percentage off.
    record->SetVal_b_enable_size(false);
    record->SetVal_b_enable_speed(false);
    record->SetVal_b_enable_remain_time(false);
    record->SetVal_b_enable_size(true);
    return MakeTask<CDeterminantWriteFileTask>(record);
}

// The record holds no folder: it is that of the present configuration.
std::shared_ptr<CDownloadTaskBase> ResumePersonPictures(const std::string& resume_xml)
{
    const auto record = ReadRecord<DownloadPersonPicTaskParam>(resume_xml, "DownloadPersonPicTaskParam");
    if (!record)
        return nullptr;
    PersonVsFileParam& settings = record->vs_file_param_;
    if (settings.str_zip_name.empty())
        settings.str_zip_name = GeneratedName();
    const std::string save_path = settings.str_save_path;
    LogInfo(" CDownloadBussinessManager::ResumeDownloadTask  DownloadPersonPicTaskParam save_path = %s",
            save_path.c_str());
    if (save_path.empty())
        settings.str_save_path = FolderOf(settings.str_zip_name);
    record->SetVal_state(ZellTaskKit::Downloading);
    FillResumedFields(*record);
    record->SetVal_b_enable_percent(false);
    record->SetVal_b_enable_speed(false);
    record->SetVal_b_enable_remain_time(false);
    record->SetVal_b_enable_size(true);
    return MakeTask<CDownloadPersonPicTask>(record);
}

// Its state stays that of a fresh record. The class in the log is another's; readers of the log know it so.
std::shared_ptr<CDownloadTaskBase> ResumeTranscoding(const std::string& resume_xml)
{
    const auto record = ReadRecord<TranscodingParam>(resume_xml, "DownloadPersonPicTaskParam");
    if (!record)
        return nullptr;
    FillResumedFields(*record);
    record->SetVal_b_enable_percent(false);
    record->SetVal_b_enable_speed(false);
    record->SetVal_b_enable_remain_time(false);
    record->SetVal_b_enable_size(true);
    return MakeTask<CTranscodingTask>(record);
}

}  // namespace

}  // namespace details

bool CDownloadBussinessManager::ResumeDownloadTask(std::shared_ptr<ZellTaskKit::CDownloadTaskBase>& task,
                                                   const std::string& resume_xml)
{
    ZellNetLink::CXmlProto document;
    if (!OpenResumeRecord(resume_xml, document))
        return false;
    std::shared_ptr<ZellTaskKit::CDownloadTaskBase> resumed;
    switch (ResumeReader(document, kResumePrefix).Number("TaskParamType")) {
        case kCompositeExportRecord:
            resumed = details::ResumeCompositeExport(resume_xml);
            break;
        case kPersonPictureRecord:
            resumed = details::ResumePersonPictures(resume_xml);
            break;
        case kTranscodingRecord:
            resumed = details::ResumeTranscoding(resume_xml);
            break;
        default:
            // Not a failure: the caller looks at the pointer.
            return true;
    }
    if (!resumed)
        return false;
    task = resumed;
    return true;
}

}  // namespace FetchyardBussiness
