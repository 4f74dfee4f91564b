#include "ZellClientHost/FrameworkManagerInterface.h"

#include "PluginHandles.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace ZellClientFrameWork {
namespace {

constexpr int kSystemConfig = 2;

}  // namespace

bool CFrameworkManagerInterface::GetPluginHandle(void*& handle, const std::string& plugin_id)
{
    void* const found = ZellClientHost::FindPluginHandle(plugin_id);
    if (found == nullptr)
        return false;
    handle = found;
    return true;
}

bool CFrameworkManagerInterface::GetClientConfig(std::string& text, int kind)
{
    text.clear();
    const std::string path = ZellClientHost::GetClientSettings().save_path;
    if (kind != kSystemConfig || path.empty())
        return false;
    const QJsonObject system = {{"FileSavePath", ZellWidgets::StringToQString(path, nullptr)}};
    const QJsonObject config = {{"SysConfig", system}};
    text = QJsonDocument(config).toJson(QJsonDocument::Compact).toStdString();
    return true;
}

bool CFrameworkManagerInterface::GetUserInfoEx(int& password_type, int& login_model)
{
    const ZellClientHost::ClientSettings settings = ZellClientHost::GetClientSettings();
    password_type = settings.password_type;
    login_model = settings.login_model;
    return true;
}

bool CFrameworkManagerInterface::GetClientInfo(std::string& client_guid, std::string& hardware_code)
{
    const ZellClientHost::ClientSettings settings = ZellClientHost::GetClientSettings();
    client_guid = settings.client_guid;
    hardware_code = settings.hardware_code;
    return true;
}

}  // namespace ZellClientFrameWork

ZELL_SINGLETON_DEFINE(ZellClientFrameWork::CFrameworkManagerInterface)
