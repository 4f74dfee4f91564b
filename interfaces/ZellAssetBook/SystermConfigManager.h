#pragma once

#include "ZellAssetBook/Export.h"
#include "ZellAssetBook/WaterMark.h"
#include "ZellBase/Singleton.h"

namespace ZellAssetBook {

// What the client configures for all its plug-ins. Any thread.
class ZELLASSETBOOK_API COXTSystermConfigManager : public Zell::Base::CSingleton<COXTSystermConfigManager>
{
public:
    // The watermark as it is configured now: the client's file is read at each call, so an edit counts at
    // once. Without a file, or with one that is wrong (which is logged), the defaults of CWaterMark.
    CWaterMark GetWaterMarkConfig();

private:
    friend class Zell::Base::CSingleton<COXTSystermConfigManager>;
    COXTSystermConfigManager() = default;
};

}  // namespace ZellAssetBook

ZELL_SINGLETON_DECLARE(ZellAssetBook::COXTSystermConfigManager)
