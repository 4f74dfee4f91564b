#include "ZellTaskKit/DownloadTaskBase.h"

#include "ZellBase/Util.h"
#include "ZellBaseHost/ProcessExit.h"

#include <utility>

namespace ZellTaskKit {

CDownloadTaskBase::CDownloadTaskBase() = default;
CDownloadTaskBase::~CDownloadTaskBase() = default;

bool CDownloadTaskBase::SetCommonData(const std::string& /*text*/)
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

void CDownloadTaskBase::RelatedCameraList(std::map<int, std::vector<int>>& cameras,
                                          Zell::Base::Error::ErrorCode& error)
{
    cameras.clear();
    error = Zell::Base::Error::ErrorCode();
}

bool CDownloadTaskBase::SetAccountInforToRequest()
{
    return true;
}

void CDownloadTaskBase::SetDownloadTaskParam(std::shared_ptr<CDownloadTaskParam> param, bool /*reserved*/)
{
    std::string guid;
    {
        const std::lock_guard<std::mutex> lock(param_mutex_);
        // A record that brings a guid gives it to a task that has none yet; from then on the task's counts.
        if (guid_.empty() && param)
            guid_ = param->GetVal_str_guid();
        if (guid_.empty())
            guid_ = Zell::Base::GuidUtil::CreateGuid();
        if (param && param->GetVal_str_guid() != guid_)
            param->SetVal_str_guid(guid_);
        param_ = std::move(param);
        guid = guid_;
    }
    const std::lock_guard<std::recursive_mutex> lock(host_mutex_);
    if (host_ != nullptr)
        host_->OnTaskParamChanged(guid);
}

std::string CDownloadTaskBase::GetGuid()
{
    const std::lock_guard<std::mutex> lock(param_mutex_);
    return guid_;
}

DownloadState CDownloadTaskBase::GetDownloadState()
{
    const std::lock_guard<std::mutex> lock(param_mutex_);
    if (!state_reported_ && param_)
        return param_->GetVal_state();
    return state_;
}

void CDownloadTaskBase::NotifyTaskState(const DownloadState& state)
{
    Zell::Base::details::ParkIfLeaving();
    std::string guid;
    {
        const std::lock_guard<std::mutex> lock(param_mutex_);
        state_reported_ = true;
        state_ = state;
        guid = guid_;
    }
    const CTaskCallbackParam report(guid, state, Zell::Base::Error::GetLastError());
    const std::lock_guard<std::recursive_mutex> lock(host_mutex_);
    if (host_ != nullptr)
        host_->OnTaskState(report);
}

void CDownloadTaskBase::SetTaskErrorCode(Zell::Base::Error::ErrorCode error)
{
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
