#include "ZellTaskKit/DownloadTaskBase.h"

#include "fakes/Journal.h"

#include <utility>

namespace ZellTaskKit {
namespace {

// Guids of tasks count apart from those of CreateGuid: "task-1" is the first one since the last Reset.
std::string NewTaskGuid()
{
    return "task-" + std::to_string(fakes::NextNumber("task guid"));
}

std::string Numbers(const Zell::Base::Error::ErrorCode& error)
{
    return "(" + std::to_string(error.iFirstCode) + "," + std::to_string(error.iSecondCode) + ")";
}

}  // namespace

CDownloadTaskBase::CDownloadTaskBase() = default;
CDownloadTaskBase::~CDownloadTaskBase() = default;

bool CDownloadTaskBase::SetCommonData(const std::string&)
{
    return false;
}

std::string CDownloadTaskBase::GetCommData()
{
    return {};
}

bool CDownloadTaskBase::Delete()
{
    return true;
}

void CDownloadTaskBase::RelatedCameraList(std::map<int, std::vector<int>>&,
                                          Zell::Base::Error::ErrorCode& error)
{
    error = {};
}

bool CDownloadTaskBase::SetAccountInforToRequest()
{
    return true;
}

void CDownloadTaskBase::SetDownloadTaskParam(std::shared_ptr<CDownloadTaskParam> param, bool reserved)
{
    fakes::Call("SetDownloadTaskParam", reserved ? "true" : "");
    const std::lock_guard<std::mutex> lock(param_mutex_);
    if (guid_.empty())
        guid_ = NewTaskGuid();
    if (param && param->GetVal_str_guid().empty())
        param->SetVal_str_guid(guid_);
    param_ = std::move(param);
}

std::string CDownloadTaskBase::GetGuid()
{
    const std::lock_guard<std::mutex> lock(param_mutex_);
    return guid_;
}

DownloadState CDownloadTaskBase::GetDownloadState()
{
    const std::lock_guard<std::mutex> lock(param_mutex_);
    return state_reported_ || !param_ ? state_ : param_->GetVal_state();
}

void CDownloadTaskBase::NotifyTaskState(const DownloadState& state)
{
    const Zell::Base::Error::ErrorCode error = Zell::Base::Error::GetLastError();
    {
        const std::lock_guard<std::mutex> lock(param_mutex_);
        state_ = state;
        state_reported_ = true;
    }
    fakes::Call("state " + std::to_string(state), Numbers(error));
    const std::lock_guard<std::recursive_mutex> lock(host_mutex_);
    if (host_ != nullptr)
        host_->OnTaskState(CTaskCallbackParam(GetGuid(), state, error));
}

void CDownloadTaskBase::SetTaskErrorCode(Zell::Base::Error::ErrorCode error)
{
    fakes::Call("SetTaskErrorCode", Numbers(error));
    const std::lock_guard<std::mutex> lock(param_mutex_);
    task_error_ = error;
}

Zell::Base::Error::ErrorCode CDownloadTaskBase::GetTaskErrorCode()
{
    const std::lock_guard<std::mutex> lock(param_mutex_);
    return task_error_;
}

void CDownloadTaskBase::SetErrorParam(const std::map<std::string, std::string>& values)
{
    std::string shown;
    for (const auto& [name, value] : values)
        shown += (shown.empty() ? "" : "; ") + name + "=" + value;
    fakes::Call("SetErrorParam", shown);
    const std::lock_guard<std::mutex> lock(param_mutex_);
    error_values_ = values;
}

std::map<std::string, std::string> CDownloadTaskBase::GetErrorParam()
{
    const std::lock_guard<std::mutex> lock(param_mutex_);
    return error_values_;
}

void CDownloadTaskBase::SetErrorParamState(bool in_use)
{
    fakes::Call("SetErrorParamState", in_use ? "true" : "false");
    const std::lock_guard<std::mutex> lock(param_mutex_);
    error_values_in_use_ = in_use;
}

bool CDownloadTaskBase::GetErrorParamState()
{
    const std::lock_guard<std::mutex> lock(param_mutex_);
    return error_values_in_use_;
}

void CDownloadTaskBase::SetTaskHost(ITaskHost* host)
{
    const std::lock_guard<std::recursive_mutex> lock(host_mutex_);
    host_ = host;
}

std::shared_ptr<CDownloadTaskParam> CDownloadTaskBase::GetParam()
{
    const std::lock_guard<std::mutex> lock(param_mutex_);
    return param_;
}

}  // namespace ZellTaskKit
