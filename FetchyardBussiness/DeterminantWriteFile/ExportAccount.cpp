#include "FetchyardBussiness/AccountRequest.h"
#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/Log.h"

namespace FetchyardBussiness {

bool CDeterminantWriteFileTask::SetAccountInforToRequest()
{
    const auto param = GetDownloadTaskParam<DeterminantDownloadParam>();
    if (!param) {
        LogError("CDeterminantWriteFileTask::SetAccountInforToRequest() failed ");
        return false;
    }
    RenewAccount(CheckPasswordOf(param->vs_file_param_));
    SetDownloadTaskParam(param, false);
    return true;
}

}  // namespace FetchyardBussiness
