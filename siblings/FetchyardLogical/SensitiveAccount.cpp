#include "SensitiveAccount.h"

#include "ZellNetLink/RapidJsonProto.h"
#include "ZellTaskKit/ClientServices.h"

namespace FetchyardLogical::details {

bool StoreSensitiveAccount(const std::string& text)
{
    ZellNetLink::CRapidJsonProto json;
    if (!json.set_str(text))
        return false;
    const std::string user = json.get_v("/UserName", std::string());
    const std::string ciphered = json.get_v("/PassWord", std::string());
    if (user.empty() || ciphered.empty())
        return false;
    std::string password;
    if (!ZellTaskKit::PrivateEncrypt::AESDecryptForSensitiveInfor(password, ciphered, 0, false))
        return false;
    return ZellTaskKit::CUserCommonManager::Instance().SetUserInfo(user, password);
}

}  // namespace FetchyardLogical::details
