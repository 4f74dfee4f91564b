#include "ZellAssetBook/SystermConfigManager.h"

#include "ZellAssetBookHost/WaterMarkFile.h"
#include "ZellBase/Log.h"

ZELL_SINGLETON_DEFINE(ZellAssetBook::COXTSystermConfigManager)

namespace ZellAssetBook {

CWaterMark COXTSystermConfigManager::GetWaterMarkConfig()
{
    CWaterMark watermark;
    std::string reason;
    if (!LoadWaterMark(WaterMarkFilePath(), watermark, reason))
        Zell::Base::details::IOXTFormatLog(
            Zell::Base::details::kLogError, "ZellAssetBook",
            "the watermark's configuration does not count, the defaults do: %s", reason.c_str());
    return watermark;
}

}  // namespace ZellAssetBook
