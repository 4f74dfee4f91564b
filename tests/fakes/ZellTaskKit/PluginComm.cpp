#include "ZellTaskKit/PluginComm.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

ZELL_SINGLETON_DEFINE(ZellTaskKit::CPluginCommManager)

namespace ZellTaskKit {

CPluginCommData::CPluginCommData(const std::string& json, void* ptr) : json_(json), ptr_(ptr) {}
CPluginCommData::~CPluginCommData() = default;

void CPluginCommData::JsonTxt(std::string& out) const
{
    out = json_;
}

void* CPluginCommData::GetPtr() const
{
    return ptr_;
}

CPluginCommData::CallBackFuc CPluginCommData::GetCallBackFuc() const
{
    return callback_;
}

void CPluginCommData::SetCallBackFuc(CallBackFuc callback)
{
    callback_ = callback;
}

CPluginCommManager::CPluginCommManager() = default;
CPluginCommManager::~CPluginCommManager() = default;

bool CPluginCommManager::DoRequest(std::shared_ptr<CPluginCommData>& response, const std::string& api,
                                   std::shared_ptr<CPluginCommData> request)
{
    std::string text;
    request->JsonTxt(text);
    if (!fakes::Call("DoRequest", api + " " + text))
        return false;
    response = std::make_shared<CPluginCommData>(fakes::TheScript().evidence_answer, nullptr);
    return true;
}

}  // namespace ZellTaskKit
