#include "FetchyardBussiness/AccountRequest.h"

#include "ZellClientHost/FrameworkManagerInterface.h"
#include "ZellTaskKit/ClientServices.h"

namespace FetchyardBussiness {

using ZellClientFrameWork::CFrameworkManagerInterface;

namespace {

constexpr char kLoginModel[] = "/CheckPasswordRequest/LoginModel";
constexpr char kClientGuid[] = "/CheckPasswordRequest/ClientGuid";
constexpr char kClientHardwareCode[] = "/CheckPasswordRequest/ClientHardwareCode";

}  // namespace

AccountResult WriteAccountFields(ZellNetLink::CRapidJsonProto& condition, const AccountFields& fields)
{
    AccountResult result;
    condition.set_v("/CheckPasswordRequest/UserName", fields.user_name);
    condition.set_v("/CheckPasswordRequest/PassWord", fields.ciphered_password);
    condition.set_v("/CheckPasswordRequest/PasswordType", fields.password_type);
    if (ZellTaskKit::CUserCommonManager::Instance().GetClientType() == ZellTaskKit::WebClient) {
        condition.set_v(kLoginModel, fields.web_login_model);
        condition.set_v(kClientGuid, std::string());
        condition.set_v(kClientHardwareCode, std::string());
        return result;
    }
    result.from_client = true;
    int login_model = 0;
    std::string client_guid;
    std::string hardware_code;
    CFrameworkManagerInterface::Instance().GetUserInfoEx(result.client_password_type, login_model);
    CFrameworkManagerInterface::Instance().GetClientInfo(client_guid, hardware_code);
    condition.set_v(kLoginModel, login_model);
    condition.set_v(kClientGuid, client_guid);
    condition.set_v(kClientHardwareCode, hardware_code);
    return result;
}

void ReadCheckPassword(const details::RequestReader& server_request, const CheckPasswordMembers& record)
{
    if (server_request.Node("CheckPasswordRequest").empty())
        return;
    record.check_password_request = true;
    record.str_received_condition = record.str_request_condition;
    ZellNetLink::CRapidJsonProto condition;
    condition.set_str(record.str_request_condition);

    const details::RequestReader check = server_request.Below("CheckPasswordRequest");
    AccountFields account;
    account.ciphered_password = check.Text("PassWord");
    std::string plain_password;
    ZellTaskKit::PrivateEncrypt::AESDecryptForSensitiveInfor(plain_password, account.ciphered_password, 0,
                                                             false);
    account.user_name = check.Text("UserName");
    account.password_type = check.Number("PasswordType");
    account.web_login_model = check.Number("LoginModel");
    record.web_login_model = account.web_login_model;
    ZellTaskKit::CUserCommonManager::Instance().SetUserInfo(account.user_name, plain_password);
    WriteAccountFields(condition, account);
    record.password_type = account.password_type;
    record.str_request_condition = condition.get_str(0);
}

void RenewAccount(const CheckPasswordMembers& record)
{
    int user_number = 0;
    AccountFields account;
    std::string plain_password;
    ZellTaskKit::CUserCommonManager::Instance().GetUserInfo(user_number, account.user_name, plain_password);
    ZellNetLink::CRapidJsonProto condition;
    condition.set_str(record.str_request_condition);
    ZellTaskKit::PrivateEncrypt::AESEncryptForSensitiveInfor(account.ciphered_password, plain_password);
    account.password_type = record.password_type;
    account.web_login_model = record.web_login_model;
    const AccountResult result = WriteAccountFields(condition, account);
    if (result.from_client) {
        condition.set_v("/CheckPasswordRequest/PasswordType", result.client_password_type);
        record.password_type = result.client_password_type;
    }
    record.str_request_condition = condition.get_str(0);
}

}  // namespace FetchyardBussiness
