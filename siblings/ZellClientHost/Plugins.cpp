#include "ZellClientHostSettings/Plugins.h"

#include "Platform/Module.h"
#include "PluginHandles.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <exception>
#include <mutex>

namespace ZellClientHost {
namespace {

using Start = bool (*)();
using Stop = void (*)();

// One plug-in starts or stops at a time.
std::mutex& OneAtATime()
{
    static auto* const mutex = new std::mutex;
    return *mutex;
}

bool StartModule(void* module, std::string& reason)
{
    const auto start = reinterpret_cast<Start>(FindFunction(module, "StartPlugin"));
    if (start == nullptr)
        return true;
    try {
        if (start())
            return true;
        reason = "the plug-in did not start";
    } catch (const std::exception& failure) {
        reason = std::string("the plug-in did not start: ") + failure.what();
    }
    return false;
}

}  // namespace

bool LoadPlugin(const std::string& plugin_id, const std::string& module_path, std::string& reason)
{
    const std::lock_guard<std::mutex> lock(OneAtATime());
    if (FindPluginHandle(plugin_id) != nullptr)
        return true;
    void* const module = LoadModule(module_path, reason);
    if (module == nullptr || !StartModule(module, reason))
        return false;
    SetPluginHandle(plugin_id, module);
    return true;
}

bool StopPlugin(const std::string& plugin_id)
{
    const std::lock_guard<std::mutex> lock(OneAtATime());
    void* const module = FindPluginHandle(plugin_id);
    if (module == nullptr)
        return false;
    SetPluginHandle(plugin_id, nullptr);
    const auto stop = reinterpret_cast<Stop>(FindFunction(module, "StopPlugin"));
    if (stop != nullptr)
        stop();
    return true;
}

}  // namespace ZellClientHost
