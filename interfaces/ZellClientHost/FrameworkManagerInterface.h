#pragma once

#include "ZellBase/Singleton.h"
#include "ZellClientHost/Export.h"

#include <string>

namespace ZellClientFrameWork {

// The running client, as its plug-ins see it. Any thread.
class ZELLCLIENTHOST_API CFrameworkManagerInterface
    : public Zell::Base::CSingleton<CFrameworkManagerInterface>
{
public:
    // The module handle of a loaded plug-in; false if the client does not know the id.
    bool GetPluginHandle(void*& handle, const std::string& plugin_id);
    // The client's configuration as JSON text; kind 2 is the system part, with /SysConfig/FileSavePath. Empty
    // if the client has none.
    bool GetClientConfig(std::string& text, int kind);
    // Password type and login model of the logged-in user.
    bool GetUserInfoEx(int& password_type, int& login_model);
    // Identity of this client.
    bool GetClientInfo(std::string& client_guid, std::string& hardware_code);

private:
    friend class Zell::Base::CSingleton<CFrameworkManagerInterface>;
    CFrameworkManagerInterface() = default;
};

}  // namespace ZellClientFrameWork

ZELL_SINGLETON_DECLARE(ZellClientFrameWork::CFrameworkManagerInterface)
