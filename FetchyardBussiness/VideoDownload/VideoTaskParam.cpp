#include "FetchyardBussiness/VideoDownload/VideoTaskParam.h"

#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/Platform/ModuleFunction.h"
#include "ZellClientHost/FrameworkManagerInterface.h"

namespace FetchyardBussiness {

VideoTaskParam::VideoTaskParam() = default;
VideoTaskParam::VideoTaskParam(const VideoTaskParam& other) = default;
VideoTaskParam& VideoTaskParam::operator=(const VideoTaskParam& other) = default;
VideoTaskParam::~VideoTaskParam() = default;

void* CToolFunc::GetPluginHandleImpl(const std::string& plugin_id)
{
    void* handle = nullptr;
    auto& host = ZellClientFrameWork::CFrameworkManagerInterface::Instance();
    if (host.GetPluginHandle(handle, plugin_id) && handle != nullptr)
        return handle;
    LogError("Get plugin failed. plugin id: %s", plugin_id.c_str());
    return handle;
}

void* CToolFunc::GetPluginTaskFunc(const std::string& plugin_id, const std::string& func_name)
{
    void* const module = GetPluginHandleImpl(plugin_id);
    if (module == nullptr) {
        LogError("Get plugin handle failed.");
        return nullptr;
    }
    void* const function = Platform::FindModuleFunction(module, func_name);
    if (function == nullptr)
        LogError("Get task_func handle failed.");
    return function;
}

}  // namespace FetchyardBussiness
