#include "ZellTaskKit/PluginComm.h"

#include "PluginRoutes.h"
#include "ZellBase/Log.h"

#include <exception>
#include <utility>

ZELL_SINGLETON_DEFINE(ZellTaskKit::CPluginCommManager)

namespace ZellTaskKit {
namespace {

using Zell::Base::details::IOXTFormatLog;
using Zell::Base::details::kLogError;

bool CallAndCatch(std::shared_ptr<CPluginCommData>& response, const std::string& api,
                  const std::shared_ptr<CPluginCommData>& request)
{
    bool is_served = false;
    try {
        const bool done = CallRoute(api, response, request, is_served);
        if (!is_served)
            IOXTFormatLog(kLogError, "ZellTaskKit", "Nobody serves %s", api.c_str());
        return done;
    } catch (const std::exception& failure) {
        IOXTFormatLog(kLogError, "ZellTaskKit", "%s ended with an exception: %s", api.c_str(),
                      failure.what());
    }
    return false;
}

}  // namespace

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
    response.reset();
    if (!CallAndCatch(response, api, request)) {
        response.reset();
        return false;
    }
    if (!response)
        response = std::make_shared<CPluginCommData>(std::string(), nullptr);
    return true;
}

}  // namespace ZellTaskKit
