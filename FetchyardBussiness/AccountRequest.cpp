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

}  // namespace FetchyardBussiness
