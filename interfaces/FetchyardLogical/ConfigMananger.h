#pragma once

#include "FetchyardLogical/Export.h"
#include "ZellBase/Singleton.h"

#include <string>

namespace FetchyardLogical {

struct ConfigurationInfo
{
    std::string save_path;
};

// What an update of the configuration changes.
enum ConfigurationType : int {
    SavePathConfiguration = 0,
};

// The engine's own configuration, kept in the client's data folder. Any thread.
class FETCHYARDLOGICAL_API CConfigMananger : public Zell::Base::CSingleton<CConfigMananger>
{
public:
    // False, with the argument as it was, if nothing is stored or it can't be read.
    bool GetConfigurationInfo(ConfigurationInfo& info);
    bool UpdateConfiguration(ConfigurationInfo& info, ConfigurationType type);

private:
    friend class Zell::Base::CSingleton<CConfigMananger>;
    CConfigMananger() = default;
};

}  // namespace FetchyardLogical

ZELL_SINGLETON_DECLARE(FetchyardLogical::CConfigMananger)
