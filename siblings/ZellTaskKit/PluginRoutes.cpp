#include "PluginRoutes.h"

#include "ZellTaskKitHost/PluginHost.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace ZellTaskKit {

// A handler and the threads that are inside it.
class PluginRoute
{
public:
    explicit PluginRoute(PluginHandler handler) : handler_(std::move(handler)) {}

    // False if the route was closed in the meantime.
    bool Enter()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (closed_)
            return false;
        callers_.push_back(std::this_thread::get_id());
        return true;
    }

    void Leave()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        callers_.erase(std::find(callers_.begin(), callers_.end(), std::this_thread::get_id()));
        left_.notify_all();
    }

    // A handler may end its own route, and does not wait for itself.
    void CloseAndWait()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        closed_ = true;
        left_.wait(lock, [this] {
            return std::all_of(callers_.begin(), callers_.end(),
                               [](std::thread::id caller) { return caller == std::this_thread::get_id(); });
        });
    }

    const PluginHandler& Handler() const { return handler_; }

private:
    const PluginHandler handler_;
    std::mutex mutex_;
    std::condition_variable left_;
    std::vector<std::thread::id> callers_;
    bool closed_ = false;
};

namespace {

struct Routes
{
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<PluginRoute>> by_path;
};

Routes& AllRoutes()
{
    static auto* routes = new Routes;
    return *routes;
}

class InsideRoute
{
public:
    explicit InsideRoute(PluginRoute& route) : route_(route) {}
    InsideRoute(const InsideRoute&) = delete;
    InsideRoute& operator=(const InsideRoute&) = delete;
    ~InsideRoute() { route_.Leave(); }

private:
    PluginRoute& route_;
};

}  // namespace

bool RegisterInterface(const std::string& path, PluginHandler handler)
{
    if (path.empty() || !handler)
        return false;
    auto route = std::make_shared<PluginRoute>(std::move(handler));
    Routes& routes = AllRoutes();
    const std::lock_guard<std::mutex> lock(routes.mutex);
    return routes.by_path.emplace(path, std::move(route)).second;
}

bool UnregisterInterface(const std::string& path)
{
    std::shared_ptr<PluginRoute> route;
    {
        Routes& routes = AllRoutes();
        const std::lock_guard<std::mutex> lock(routes.mutex);
        const auto found = routes.by_path.find(path);
        if (found == routes.by_path.end())
            return false;
        route = std::move(found->second);
        routes.by_path.erase(found);
    }
    route->CloseAndWait();
    return true;
}

bool CallRoute(const std::string& path, std::shared_ptr<CPluginCommData>& response,
               const std::shared_ptr<CPluginCommData>& request, bool& is_served)
{
    std::shared_ptr<PluginRoute> route;
    {
        Routes& routes = AllRoutes();
        const std::lock_guard<std::mutex> lock(routes.mutex);
        const auto found = routes.by_path.find(path);
        if (found != routes.by_path.end())
            route = found->second;
    }
    is_served = route && route->Enter();
    if (!is_served)
        return false;
    const InsideRoute inside(*route);
    return route->Handler()(response, request);
}

}  // namespace ZellTaskKit
