#pragma once

#include <httplib.h>

#include <string>
#include <string_view>
#include <vector>

namespace Station {

struct Services;

// One request on its way through an endpoint.
struct Call
{
    Services& services;
    const httplib::Request& request;
    httplib::Response& response;
    std::string name;  // what stands in the place of the "{name}" of the route
};

// An endpoint. The path may hold one "{name}", which stands for one step of a path.
struct Route
{
    std::string_view method;
    std::string_view path;
    void (*handle)(Call& call);
    bool is_open = false;     // needs no account
    bool is_control = false;  // there only for tests
};

// Every endpoint that the station has; those for tests are answered only when they are switched on.
std::vector<Route> StationRoutes();

enum class RouteMatch { Found, OtherMethod, None };
// Leaves the route and the text for its "{name}" in the out arguments.
RouteMatch FindRoute(const std::vector<Route>& routes, std::string_view method, std::string_view path,
                     const Route*& route, std::string& name);

}  // namespace Station
