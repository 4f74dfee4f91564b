#pragma once

#include "ZellBase/Error.h"
#include "ZellTaskKit/DownloadTypes.h"
#include "ZellTaskKit/Export.h"

#include <string>

namespace ZellTaskKit {

// One report of one task: its guid, the new state and the error that goes with it.
class ZELLTASKKIT_API CTaskCallbackParam
{
public:
    CTaskCallbackParam();
    CTaskCallbackParam(std::string guid, DownloadState state, const Zell::Base::Error::ErrorCode& error);
    CTaskCallbackParam(const CTaskCallbackParam& other);
    CTaskCallbackParam& operator=(const CTaskCallbackParam& other);
    virtual ~CTaskCallbackParam();

    std::string GetVal_task_guid() const;
    DownloadState GetVal_state() const;
    Zell::Base::Error::ErrorCode GetVal_error_code() const;

private:
    std::string task_guid_;
    DownloadState state_ = Unstarted;
    Zell::Base::Error::ErrorCode error_code_;
};

}  // namespace ZellTaskKit
