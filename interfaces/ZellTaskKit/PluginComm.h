#pragma once

#include "ZellBase/Singleton.h"
#include "ZellTaskKit/Export.h"

#include <memory>
#include <string>

namespace ZellTaskKit {

// The envelope of a request to another plug-in, or of its answer.
class ZELLTASKKIT_API CPluginCommData
{
public:
    using CallBackFuc = void (*)(const std::string&, void*);

    CPluginCommData(const std::string& json, void* ptr);
    CPluginCommData(const CPluginCommData&) = delete;
    CPluginCommData& operator=(const CPluginCommData&) = delete;
    virtual ~CPluginCommData();
    virtual void JsonTxt(std::string& out) const;
    virtual void* GetPtr() const;
    virtual CallBackFuc GetCallBackFuc() const;
    virtual void SetCallBackFuc(CallBackFuc callback);

private:
    std::string json_;
    void* ptr_;
    CallBackFuc callback_ = nullptr;
};

// Carries requests between plug-ins by interface path.
class ZELLTASKKIT_API CPluginCommManager : public Zell::Base::CSingleton<CPluginCommManager>
{
public:
    virtual ~CPluginCommManager();
    // Passes the request to whoever serves the path and waits for the answer, on the calling thread. False if
    // nobody serves it or the request failed; response is then empty.
    virtual bool DoRequest(std::shared_ptr<CPluginCommData>& response, const std::string& api,
                           std::shared_ptr<CPluginCommData> request);

private:
    friend class Zell::Base::CSingleton<CPluginCommManager>;
    CPluginCommManager();
};

}  // namespace ZellTaskKit

ZELL_SINGLETON_DECLARE(ZellTaskKit::CPluginCommManager)
