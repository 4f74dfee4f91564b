#include "ZellTaskKit/ClientServices.h"

#include "IsoTime.h"
#include "ZellBaseHost/ProcessExit.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <openssl/crypto.h>

#include <chrono>
#include <mutex>
#include <thread>

ZELL_SINGLETON_DEFINE(ZellTaskKit::CUserCommonManager)
ZELL_SINGLETON_DEFINE(ZellTaskKit::CFrameSystemConfigMgr)
ZELL_SINGLETON_DEFINE(ZellTaskKit::CTimeZoneManager)

namespace ZellTaskKit {
namespace {

// The login as it was last given, in this process's memory only.
struct Login
{
    std::mutex mutex;
    std::string user;
    std::string password;
};

Login& StoredLogin()
{
    static auto* login = new Login;
    return *login;
}

std::string WithFinalSlash(std::string path)
{
    if (!path.empty() && path.back() != '/' && path.back() != '\\')
        path += '/';
    return path;
}

}  // namespace

bool CUserCommonManager::SetUserInfo(const std::string& user, const std::string& password)
{
    Login& login = StoredLogin();
    const std::lock_guard<std::mutex> lock(login.mutex);
    OPENSSL_cleanse(login.password.data(), login.password.size());
    login.user = user;
    login.password = password;
    return true;
}

bool CUserCommonManager::GetUserInfo(int& user_number, std::string& name, std::string& password)
{
    user_number = 0;
    {
        Login& login = StoredLogin();
        const std::lock_guard<std::mutex> lock(login.mutex);
        if (!login.user.empty()) {
            name = login.user;
            password = login.password;
            return true;
        }
    }
    const ZellClientHost::ClientSettings settings = ZellClientHost::GetClientSettings();
    if (settings.user_name.empty())
        return false;
    name = settings.user_name;
    password = settings.password;
    return true;
}

eClientType CUserCommonManager::GetClientType()
{
    return static_cast<eClientType>(ZellClientHost::GetClientSettings().client_type);
}

std::string CFrameSystemConfigMgr::GetClientDataPath()
{
    return WithFinalSlash(ZellClientHost::GetClientSettings().data_path);
}

std::string CFrameSystemConfigMgr::GetClientDataPublicPath()
{
    return WithFinalSlash(ZellClientHost::GetClientSettings().public_data_path);
}

std::int64_t CTimeZoneManager::ISOTimeToTimeT(const std::string& text)
{
    const std::optional<IsoTime> time = ParseIsoTime(text);
    return time ? SecondsSince1970(*time).value_or(0) : 0;
}

void ZC_Sleep(unsigned long milliseconds)
{
    const Zell::Base::details::CBlockedMark blocked;
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace ZellTaskKit
