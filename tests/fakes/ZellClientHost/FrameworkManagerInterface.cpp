#include "ZellClientHost/FrameworkManagerInterface.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

ZELL_SINGLETON_DEFINE(ZellClientFrameWork::CFrameworkManagerInterface)

namespace ZellClientFrameWork {

bool CFrameworkManagerInterface::GetPluginHandle(void*& handle, const std::string& plugin_id)
{
    const auto& plugins = fakes::TheScript().plugins;
    const auto found = plugins.find(plugin_id);
    handle = found == plugins.end() ? nullptr : found->second;
    return fakes::Call("GetPluginHandle", plugin_id) && found != plugins.end();
}

bool CFrameworkManagerInterface::GetClientConfig(std::string& text, int kind)
{
    if (!fakes::Call("GetClientConfig", std::to_string(kind)))
        return false;
    text = fakes::TheScript().client_config;
    return true;
}

bool CFrameworkManagerInterface::GetUserInfoEx(int& password_type, int& login_model)
{
    if (!fakes::Call("GetUserInfoEx", ""))
        return false;
    password_type = fakes::TheScript().password_type;
    login_model = fakes::TheScript().login_model;
    return true;
}

bool CFrameworkManagerInterface::GetClientInfo(std::string& client_guid, std::string& hardware_code)
{
    if (!fakes::Call("GetClientInfo", ""))
        return false;
    client_guid = fakes::TheScript().client_guid;
    hardware_code = fakes::TheScript().hardware_code;
    return true;
}

}  // namespace ZellClientFrameWork
