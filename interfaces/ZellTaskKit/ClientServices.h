#pragma once

#include "ZellBase/Singleton.h"
#include "ZellTaskKit/Export.h"

#include <cstdint>
#include <string>

namespace ZellTaskKit {

// The kind of client that hosts the library.
enum eClientType : int {
    DesktopClient = 0,  // its configuration text names the save path
    WebClient = 1,      // the engine's own configuration names it
    OtherClient = 2,
};

// The login of the client's user. Any thread.
class ZELLTASKKIT_API CUserCommonManager : public Zell::Base::CSingleton<CUserCommonManager>
{
public:
    // Stores the login for later account work; the password in clear.
    bool SetUserInfo(const std::string& user, const std::string& password);
    // The stored login, or that of the client's settings; the first argument gets the user's number, 0 here.
    // False, with the texts as they were, if nobody is logged in.
    bool GetUserInfo(int& user_number, std::string& name, std::string& password);
    eClientType GetClientType();

private:
    friend class Zell::Base::CSingleton<CUserCommonManager>;
    CUserCommonManager() = default;
};

// The folders of the client.
class ZELLTASKKIT_API CFrameSystemConfigMgr : public Zell::Base::CSingleton<CFrameSystemConfigMgr>
{
public:
    // Data folder of the user, and the one that all users share. UTF-8, each with a final "/".
    std::string GetClientDataPath();
    std::string GetClientDataPublicPath();

private:
    friend class Zell::Base::CSingleton<CFrameSystemConfigMgr>;
    CFrameSystemConfigMgr() = default;
};

// Time texts.
class ZELLTASKKIT_API CTimeZoneManager : public Zell::Base::CSingleton<CTimeZoneManager>
{
public:
    // "2026-01-31T23:59:59" with an optional fraction (dropped) and "Z" or an offset as "+08:00", "+0800" or
    // "+08"; a text without offset is local time. The seconds may be left out, or the whole time of day,
    // which is then midnight; a blank may stand for the "T", and the forms without "-" and ":" are read as
    // well. 24:00 is the midnight behind the day, a second of 60 the first of the next minute. Seconds since
    // 1970; 0 for an empty text or one that is no time.
    std::int64_t ISOTimeToTimeT(const std::string& text);

private:
    friend class Zell::Base::CSingleton<CTimeZoneManager>;
    CTimeZoneManager() = default;
};

// Sensitive texts between client and server: AES-256-GCM with the key in the client's data folder, as the
// Base64 text of 12 bytes of nonce, the ciphered bytes and 16 bytes of tag. Any thread.
namespace PrivateEncrypt {
// False, with an empty out, on a text that is not of this cipher or key. The last two arguments are 0, false.
ZELLTASKKIT_API bool AESDecryptForSensitiveInfor(std::string& out, const std::string& in,
                                                 unsigned int reserved, bool reserved_flag);
// Makes the key if there is none yet; false, with an empty out, if there can be none or it is not usable.
ZELLTASKKIT_API bool AESEncryptForSensitiveInfor(std::string& out, const std::string& in);
}  // namespace PrivateEncrypt

// Sleeps for that many milliseconds.
ZELLTASKKIT_API void ZC_Sleep(unsigned long milliseconds);

}  // namespace ZellTaskKit

ZELL_SINGLETON_DECLARE(ZellTaskKit::CUserCommonManager)
ZELL_SINGLETON_DECLARE(ZellTaskKit::CFrameSystemConfigMgr)
ZELL_SINGLETON_DECLARE(ZellTaskKit::CTimeZoneManager)
