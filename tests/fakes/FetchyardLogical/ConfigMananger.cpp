#include "FetchyardLogical/ConfigMananger.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

ZELL_SINGLETON_DEFINE(FetchyardLogical::CConfigMananger)

namespace FetchyardLogical {

bool CConfigMananger::GetConfigurationInfo(ConfigurationInfo& info)
{
    if (!fakes::Call("GetConfigurationInfo", ""))
        return false;
    info.save_path = fakes::TheScript().configured_save_path;
    return true;
}

bool CConfigMananger::UpdateConfiguration(ConfigurationInfo& info, ConfigurationType type)
{
    return fakes::Call("UpdateConfiguration", info.save_path + " " + std::to_string(type));
}

}  // namespace FetchyardLogical
