#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/PluginNames.h"
#include "FetchyardBussiness/TaskDispatch.h"
#include "FetchyardBussiness/TranscodingTask/TranscodingTask.h"

namespace FetchyardBussiness {

bool CDownloadBussinessManager::AddTranscodingTask(std::string& task_guid, const std::string& request)
{
    const auto record = std::make_shared<TranscodingParam>();
    bool show_tip = false;
    std::string task_name;
    std::vector<std::string> file_names;
    if (!FetchyardLogical::CProtocalFactory::Instance().ParseTranscodingRequest(
            file_names, show_tip, task_name, record->transcode_files, request)) {
        LogError("Parse transcoding request failed.");
        return false;
    }
    record->SetVal_str_name(task_name);
    if (record->transcode_files.empty()) {
        LogError("Has no file need to transfer.");
        return false;
    }
    // The task has one folder, that of the first result.
    const std::string& first = record->transcode_files.front().save_file;
    const std::size_t slash = first.rfind('/');
    if (slash != std::string::npos && slash != 0)
        record->SetVal_str_file_path(first.substr(0, slash));
    record->SetVal_b_enable_percent(false);
    record->SetVal_b_enable_speed(false);
    record->SetVal_b_enable_remain_time(false);
    record->SetVal_b_enable_size(true);
    record->SetVal_str_plugin_id(fetchyard_plugin::kId);
    record->SetVal_b_show_tip(show_tip);
    record->SetDownloadFileNames(file_names);
    const auto task = std::make_shared<CTranscodingTask>();
    task->SetDownloadTaskParam(record, false);
    task_guid = task->GetGuid();
    return details::DispatchTasks({task});
}

}  // namespace FetchyardBussiness
