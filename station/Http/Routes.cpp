#include "station/Http/Routes.h"

#include "station/Endpoints/Endpoints.h"

namespace Station {
namespace {

bool StartsWith(std::string_view text, std::string_view begin)
{
    return text.substr(0, begin.size()) == begin;
}

bool EndsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool MatchesPath(std::string_view pattern, std::string_view path, std::string& name)
{
    constexpr std::string_view kName = "{name}";
    const std::size_t at = pattern.find(kName);
    if (at == std::string_view::npos)
        return pattern == path;
    const std::string_view before = pattern.substr(0, at);
    const std::string_view behind = pattern.substr(at + kName.size());
    if (path.size() <= before.size() + behind.size() || !StartsWith(path, before) || !EndsWith(path, behind))
        return false;
    name = path.substr(before.size(), path.size() - before.size() - behind.size());
    return name.find('/') == std::string::npos;
}

}  // namespace

std::vector<Route> StationRoutes()
{
    std::vector<Route> routes;
    for (const auto& group : {ReportRoutes(), PictureRoutes(), CameraRoutes(), FileRoutes(),
                              SyntheticRoutes(), HealthRoutes(), ControlRoutes()})
        routes.insert(routes.end(), group.begin(), group.end());
    return routes;
}

RouteMatch FindRoute(const std::vector<Route>& routes, std::string_view method, std::string_view path,
                     const Route*& route, std::string& name)
{
    RouteMatch best = RouteMatch::None;
    for (const Route& candidate : routes) {
        if (!MatchesPath(candidate.path, path, name))
            continue;
        if (candidate.method != method) {
            best = best == RouteMatch::Found ? best : RouteMatch::OtherMethod;
            continue;
        }
        best = RouteMatch::Found;
        route = &candidate;
        // A path without a "{name}" fits better than any with one.
        if (candidate.path == path)
            break;
    }
    return best;
}

}  // namespace Station
