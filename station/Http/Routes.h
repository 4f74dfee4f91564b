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
    // What stands in the places of the first and the second step in braces of the route; empty if it has
    // none.
    std::string name;
    std::string second_name;
};

// An endpoint. The path may hold up to two steps in braces, such as "{name}", each of which stands for any
// step.
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
// What was found for a path. The route is there only if it was Found.
struct FoundRoute
{
    RouteMatch match = RouteMatch::None;
    const Route* route = nullptr;
    std::string name;
    std::string second_name;
};
FoundRoute FindRoute(const std::vector<Route>& routes, std::string_view method, std::string_view path);

}  // namespace Station
