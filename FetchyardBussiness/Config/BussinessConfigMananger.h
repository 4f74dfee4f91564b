#pragma once

#include "FetchyardBussiness/Export.h"
#include "FetchyardLogical/ConfigMananger.h"
#include "ZellBase/Singleton.h"

#include <string>

namespace FetchyardBussiness {

// Where downloads go. The answer depends on the kind of client that hosts the library. Any thread.
class FETCHYARD_API CBussinessConfigMananger : public Zell::Base::CSingleton<CBussinessConfigMananger>
{
public:
    // The folder for downloads with forward slashes; empty if the client is of a kind that has none.
    std::string GetSavePath();
    // False, with the argument as it was, for a kind of client that has no configuration; otherwise true,
    // also where the stored configuration can't be read.
    bool GetConfigurationInfo(FetchyardLogical::ConfigurationInfo& info);
    bool UpdateConfiguration(FetchyardLogical::ConfigurationInfo& info,
                             FetchyardLogical::ConfigurationType type) const;

private:
    friend class Zell::Base::CSingleton<CBussinessConfigMananger>;
    CBussinessConfigMananger() = default;
};

}  // namespace FetchyardBussiness

ZELL_SINGLETON_DECLARE(FetchyardBussiness::CBussinessConfigMananger)
