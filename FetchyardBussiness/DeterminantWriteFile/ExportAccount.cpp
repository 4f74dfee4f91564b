#include "FetchyardBussiness/AccountRequest.h"
#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/Log.h"
#include "ZellNetLink/RapidJsonProto.h"
#include "ZellTaskKit/ClientServices.h"

namespace FetchyardBussiness {

bool CDeterminantWriteFileTask::SetAccountInforToRequest()
{
    const auto param = GetDownloadTaskParam<DeterminantDownloadParam>();
    if (!param) {
        LogError("CDeterminantWriteFileTask::SetAccountInforToRequest() failed ");
        return false;
    }
    VsFileParam& settings = param->vs_file_param_;
    int user_number = 0;
    AccountFields account;
    std::string plain_password;
    ZellTaskKit::CUserCommonManager::Instance().GetUserInfo(user_number, account.user_name, plain_password);
    ZellNetLink::CRapidJsonProto condition;
    condition.set_str(settings.str_request_condition);
    ZellTaskKit::PrivateEncrypt::AESEncryptForSensitiveInfor(account.ciphered_password, plain_password);
    account.password_type = settings.password_type;
    account.web_login_model = settings.web_login_model;
    const AccountResult result = WriteAccountFields(condition, account);
    if (result.from_client) {
        condition.set_v("/CheckPasswordRequest/PasswordType", result.client_password_type);
        settings.password_type = result.client_password_type;
    }
    settings.str_request_condition = condition.get_str(0);
    SetDownloadTaskParam(param, false);
    return true;
}

}  // namespace FetchyardBussiness
