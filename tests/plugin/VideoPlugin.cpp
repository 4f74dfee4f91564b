#include "Export.h"
#include "ZellTaskKitHost/PluginHost.h"

#include <atomic>
#include <memory>
#include <string>

// Stands in for the video plug-in: takes the requests at its interface path and refuses those that say so.
namespace {

using ZellTaskKit::CPluginCommData;

constexpr char kPath[] = "/API/ClipVault/V0/DownloadVideoFiles";

std::atomic<int> taken{0};

bool Take(std::shared_ptr<CPluginCommData>& response, const std::shared_ptr<CPluginCommData>& request)
{
    std::string text;
    request->JsonTxt(text);
    if (text.find("refuse") != std::string::npos)
        return false;
    ++taken;
    response = std::make_shared<CPluginCommData>("{}", nullptr);
    return true;
}

}  // namespace

PLUGIN_FUNCTION bool StartPlugin()
{
    return ZellTaskKit::RegisterInterface(kPath, Take);
}

PLUGIN_FUNCTION void StopPlugin()
{
    ZellTaskKit::UnregisterInterface(kPath);
}

PLUGIN_FUNCTION int TakenRequests()
{
    return taken;
}
