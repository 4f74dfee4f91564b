#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Log.h"
#include "ZellNetLink/RapidJsonProto.h"

namespace FetchyardBussiness {

std::string CDeterminantWriteFileTask::ReasonText(const ErrorCode& error)
{
    return ErrorMessage(error).toStdString();
}

void CDeterminantWriteFileTask::RecordFailure(const VsFileParam& settings, const std::string& name,
                                              const ErrorCode& error)
{
    if (settings.is_continue_dowinloading)
        InsertFailure(name, ReasonText(error), error);
}

// An entry that is there keeps its first value.
void CDeterminantWriteFileTask::InsertFailure(const std::string& name, const std::string& reason,
                                              const ErrorCode& error)
{
    error_file_map.emplace(name, reason);
    error_code_map.emplace(error.iSecondCode, error.iFirstCode);
    SetErrorCodeJsonToUp();
}

// Lists all files that have failed so far, in the order of their names.
void CDeterminantWriteFileTask::SetErrorCodeJsonToUp()
{
    ZellNetLink::CRapidJsonProto list;
    std::map<std::string, std::string> values;
    int number = 0;
    for (const auto& [name, reason] : error_file_map) {
        const std::string entry = "ArrayList[" + std::to_string(++number) + "]";
        list.set_v("/" + entry + "/FileName", name);
        list.set_v("/" + entry + "/ErrorReason", reason);
        values.emplace(entry + "/FileName", name);
        values.emplace(entry + "/ErrorReason", reason);
    }
    const std::string text = list.get_str(0);
    SetCommonData(text);
    SetErrorParamState(true);
    SetErrorParam(values);
    const auto param = GetDownloadTaskParam<DeterminantDownloadParam>();
    if (!param) {
        LogError("CDeterminantWriteFileTask::SetErrorCodeJsonToUp() param failed ");
        return;
    }
    param->SetVal_reserve_data(text);
    SetDownloadTaskParam(param, false);
}

}  // namespace FetchyardBussiness
