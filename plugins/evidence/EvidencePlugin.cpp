// The module's start and stop: it serves one interface path.
#include "EvidenceRequest.h"
#include "ZellBase/Export.h"
#include "ZellTaskKitHost/PluginHost.h"

namespace {

constexpr char kPath[] = "/API/Evidence/V0/CreateEvidence";

bool Serve(std::shared_ptr<ZellTaskKit::CPluginCommData>& response,
           const std::shared_ptr<ZellTaskKit::CPluginCommData>& request)
{
    std::string text;
    if (request)
        request->JsonTxt(text);
    response = std::make_shared<ZellTaskKit::CPluginCommData>(Evidence::Register(text), nullptr);
    return true;
}

}  // namespace

extern "C" ZELL_SYMBOL_EXPORT bool StartPlugin()
{
    return ZellTaskKit::RegisterInterface(kPath, Serve);
}

extern "C" ZELL_SYMBOL_EXPORT void StopPlugin()
{
    ZellTaskKit::UnregisterInterface(kPath);
}
