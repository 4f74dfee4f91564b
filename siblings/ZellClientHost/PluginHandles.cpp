#include "PluginHandles.h"

#include "ZellClientHostSettings/ClientSettings.h"

#include <map>
#include <mutex>

namespace ZellClientHost {
namespace {

struct Handles
{
    std::mutex mutex;
    std::map<std::string, void*> by_id;

    static Handles& Instance()
    {
        static auto* const handles = new Handles;
        return *handles;
    }
};

}  // namespace

void SetPluginHandle(const std::string& plugin_id, void* handle)
{
    Handles& handles = Handles::Instance();
    const std::lock_guard<std::mutex> lock(handles.mutex);
    if (handle == nullptr)
        handles.by_id.erase(plugin_id);
    else
        handles.by_id[plugin_id] = handle;
}

void* FindPluginHandle(const std::string& plugin_id)
{
    Handles& handles = Handles::Instance();
    const std::lock_guard<std::mutex> lock(handles.mutex);
    const auto found = handles.by_id.find(plugin_id);
    return found == handles.by_id.end() ? nullptr : found->second;
}

}  // namespace ZellClientHost
