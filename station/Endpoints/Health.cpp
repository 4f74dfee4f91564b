#include "station/Endpoints/Endpoints.h"

namespace Station {
namespace {

void AnswerHealth(Call& call)
{
    call.response.set_content(R"({"Status":"ok"})", kJson);
}

}  // namespace

std::vector<Route> HealthRoutes()
{
    return {{"GET", "/health", AnswerHealth, true}};
}

}  // namespace Station
