#include "station/Http/Routes.h"

#include "station/Endpoints/Endpoints.h"

#include <algorithm>

namespace Station {
namespace {

// Takes what stands before the next slash off the path.
std::string_view TakeStep(std::string_view& path)
{
    const std::size_t slash = std::min(path.find('/'), path.size());
    const std::string_view step = path.substr(0, slash);
    path.remove_prefix(std::min(slash + 1, path.size()));
    return step;
}

bool IsInBraces(std::string_view step)
{
    return !step.empty() && step.front() == '{' && step.back() == '}';
}

// Leaves the texts of the steps in braces, in their order.
bool MatchesPath(std::string_view pattern, std::string_view path, std::vector<std::string>& names)
{
    if (std::count(pattern.begin(), pattern.end(), '/') != std::count(path.begin(), path.end(), '/'))
        return false;
    while (!pattern.empty()) {
        const std::string_view wanted = TakeStep(pattern);
        const std::string_view step = TakeStep(path);
        if (!IsInBraces(wanted) && wanted != step)
            return false;
        if (!IsInBraces(wanted))
            continue;
        if (step.empty())
            return false;
        names.emplace_back(step);
    }
    return true;
}

}  // namespace

std::vector<Route> StationRoutes()
{
    std::vector<Route> routes;
    for (const auto& group : {ReportRoutes(), PersonRoutes(), PictureRoutes(), CameraRoutes(), FileRoutes(),
                              RecordingRoutes(), DockRoutes(), EvidenceRoutes(), GeneratedRoutes(),
                              LogRoutes(), SyntheticRoutes(), HealthRoutes(), ControlRoutes()})
        routes.insert(routes.end(), group.begin(), group.end());
    return routes;
}

FoundRoute FindRoute(const std::vector<Route>& routes, std::string_view method, std::string_view path)
{
    FoundRoute best;
    for (const Route& candidate : routes) {
        std::vector<std::string> names;
        if (!MatchesPath(candidate.path, path, names))
            continue;
        if (candidate.method != method) {
            best.match = best.match == RouteMatch::Found ? best.match : RouteMatch::OtherMethod;
            continue;
        }
        names.resize(2);
        best = {RouteMatch::Found, &candidate, names[0], names[1]};
        // A path without braces fits better than any with some.
        if (candidate.path == path)
            break;
    }
    return best;
}

}  // namespace Station
