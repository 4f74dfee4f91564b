#include "ZellTaskKit/TaskCallbackParam.h"

#include <utility>

namespace ZellTaskKit {

CTaskCallbackParam::CTaskCallbackParam() = default;

CTaskCallbackParam::CTaskCallbackParam(std::string guid, DownloadState state,
                                       const Zell::Base::Error::ErrorCode& error)
    : task_guid_(std::move(guid)), state_(state), error_code_(error)
{
}

CTaskCallbackParam::CTaskCallbackParam(const CTaskCallbackParam& other) = default;
CTaskCallbackParam& CTaskCallbackParam::operator=(const CTaskCallbackParam& other) = default;
CTaskCallbackParam::~CTaskCallbackParam() = default;

std::string CTaskCallbackParam::GetVal_task_guid() const
{
    return task_guid_;
}

DownloadState CTaskCallbackParam::GetVal_state() const
{
    return state_;
}

Zell::Base::Error::ErrorCode CTaskCallbackParam::GetVal_error_code() const
{
    return error_code_;
}

}  // namespace ZellTaskKit
