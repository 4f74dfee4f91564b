#include "station/Http/Routes.h"

#include <gtest/gtest.h>

using namespace Station;

namespace {

void Nothing(Call&) {}

const std::vector<Route>& Routes()
{
    static const auto* const routes = new std::vector<Route>{{"GET", "/files/{name}", Nothing},
                                                             {"GET", "/files/all", Nothing},
                                                             {"POST", "/files/{name}", Nothing},
                                                             {"GET", "/dock/{device}/files/{id}", Nothing},
                                                             {"POST", "/{area}/report", Nothing}};
    return *routes;
}

// "path name second_name", or what went wrong.
std::string Found(std::string_view method, std::string_view path)
{
    const FoundRoute found = FindRoute(Routes(), method, path);
    if (found.match == RouteMatch::None)
        return "none";
    if (found.match == RouteMatch::OtherMethod)
        return "other method";
    return std::string(found.route->path) + " [" + found.name + "] [" + found.second_name + "]";
}

}  // namespace

TEST(StationRoutes, StepsInBracesTakeTheirTexts)
{
    EXPECT_EQ(Found("GET", "/files/a.txt"), "/files/{name} [a.txt] []");
    EXPECT_EQ(Found("GET", "/dock/2/files/17"), "/dock/{device}/files/{id} [2] [17]");
    EXPECT_EQ(Found("POST", "/events/report"), "/{area}/report [events] []");
    EXPECT_EQ(Found("GET", "/files/{name}"), "/files/{name} [{name}] []");
}

TEST(StationRoutes, PathWithoutBracesFitsBetter)
{
    EXPECT_EQ(Found("GET", "/files/all"), "/files/all [] []");
}

TEST(StationRoutes, OtherMethodIsToldApartFromNoRoute)
{
    EXPECT_EQ(Found("POST", "/files/all"), "/files/{name} [all] []");
    EXPECT_EQ(Found("DELETE", "/files/all"), "other method");
    EXPECT_EQ(Found("GET", "/x/report"), "other method");
}

TEST(StationRoutes, EmptyMissingAndSurplusStepsFitNothing)
{
    for (const char* path :
         {"", "/", "/files", "/files/", "/files//", "/files/a/", "/files/a/b", "//files/a", "files/a",
          "/dock//files/1", "/dock/1/files/", "/dock/1/file/1", "/dock/1/2/files/1"})
        EXPECT_EQ(Found("GET", path), "none") << path;
}
