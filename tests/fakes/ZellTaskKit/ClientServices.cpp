#include "ZellTaskKit/ClientServices.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

#include <QDateTime>

ZELL_SINGLETON_DEFINE(ZellTaskKit::CUserCommonManager)
ZELL_SINGLETON_DEFINE(ZellTaskKit::CFrameSystemConfigMgr)
ZELL_SINGLETON_DEFINE(ZellTaskKit::CTimeZoneManager)

namespace ZellTaskKit {

bool CUserCommonManager::SetUserInfo(const std::string& user, const std::string& password)
{
    return fakes::Call("SetUserInfo", user + " " + password);
}

bool CUserCommonManager::GetUserInfo(int& user_number, std::string& name, std::string& password)
{
    if (!fakes::Call("GetUserInfo", ""))
        return false;
    user_number = 0;
    name = fakes::TheScript().user_name;
    password = fakes::TheScript().password;
    return true;
}

eClientType CUserCommonManager::GetClientType()
{
    return static_cast<eClientType>(fakes::TheScript().client_type);
}

std::string CFrameSystemConfigMgr::GetClientDataPath()
{
    return fakes::TheScript().data_path;
}

std::string CFrameSystemConfigMgr::GetClientDataPublicPath()
{
    return fakes::TheScript().public_data_path;
}

std::int64_t CTimeZoneManager::ISOTimeToTimeT(const std::string& text)
{
    const QDateTime time = QDateTime::fromString(QString::fromStdString(text), Qt::ISODate);
    return time.isValid() ? time.toSecsSinceEpoch() : 0;
}

namespace PrivateEncrypt {

bool AESDecryptForSensitiveInfor(std::string& out, const std::string& in, unsigned int reserved,
                                 bool reserved_flag)
{
    const std::string flags = " " + std::to_string(reserved) + " " + (reserved_flag ? "true" : "false");
    if (!fakes::Call("AESDecryptForSensitiveInfor", in + flags)) {
        out.clear();
        return false;
    }
    out = "plain-of-" + in;
    return true;
}

bool AESEncryptForSensitiveInfor(std::string& out, const std::string& in)
{
    if (!fakes::Call("AESEncryptForSensitiveInfor", in))
        return false;
    out = "cipher-of-" + in;
    return true;
}

}  // namespace PrivateEncrypt

void ZC_Sleep(unsigned long milliseconds)
{
    fakes::Call("ZC_Sleep", std::to_string(milliseconds));
}

}  // namespace ZellTaskKit
