#include "FetchyardBussiness/Config/BussinessConfigMananger.h"

#include "FetchyardBussiness/Log.h"
#include "ZellBase/Util.h"
#include "ZellClientHost/FrameworkManagerInterface.h"
#include "ZellNetLink/RapidJsonProto.h"
#include "ZellTaskKit/ClientServices.h"

ZELL_SINGLETON_DEFINE(FetchyardBussiness::CBussinessConfigMananger)

namespace FetchyardBussiness {

using FetchyardLogical::CConfigMananger;
using FetchyardLogical::ConfigurationInfo;
using FetchyardLogical::ConfigurationType;
using ZellTaskKit::CFrameSystemConfigMgr;

namespace {

// Number of the system part of the client's configuration.
constexpr int kSystemConfig = 2;

void ReadDesktopSavePath(ConfigurationInfo& info)
{
    std::string text;
    ZellClientFrameWork::CFrameworkManagerInterface::Instance().GetClientConfig(text, kSystemConfig);
    if (text.empty()) {
        info.save_path = CFrameSystemConfigMgr::Instance().GetClientDataPublicPath();
        return;
    }
    ZellNetLink::CRapidJsonProto config;
    config.set_str(text);
    info.save_path = config.get_v("/SysConfig/FileSavePath", "");
}

}  // namespace

std::string CBussinessConfigMananger::GetSavePath()
{
    ConfigurationInfo info;
    GetConfigurationInfo(info);
    return info.save_path;
}

bool CBussinessConfigMananger::GetConfigurationInfo(ConfigurationInfo& info)
{
    switch (ZellTaskKit::CUserCommonManager::Instance().GetClientType()) {
        case ZellTaskKit::DesktopClient:
            ReadDesktopSavePath(info);
            break;
        case ZellTaskKit::WebClient:
            if (!CConfigMananger::Instance().GetConfigurationInfo(info))
                LogError("Get Fetchyard Configuration faild");
            if (info.save_path.empty())
                info.save_path = CFrameSystemConfigMgr::Instance().GetClientDataPath() + "Fetchyard/";
            break;
        default:
            LogError("Get Fetchyard Configuration faild");
            return false;
    }
    info.save_path = Zell::Base::StringUtil::StringReplace(info.save_path, "\\", "/");
    return true;
}

bool CBussinessConfigMananger::UpdateConfiguration(ConfigurationInfo& info, ConfigurationType type) const
{
    return CConfigMananger::Instance().UpdateConfiguration(info, type);
}

}  // namespace FetchyardBussiness
