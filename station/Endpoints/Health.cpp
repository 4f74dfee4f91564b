#include "station/Endpoints/Endpoints.h"

#include <nlohmann/json.hpp>

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

void AnswerError(httplib::Response& response, int status, StationError code, const std::string& text)
{
    const nlohmann::ordered_json answer = {
        {"ErrorModule", kModuleStation}, {"ErrorCode", static_cast<int>(code)}, {"ErrorText", text}};
    response.status = status;
    response.set_content(answer.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace),
                         kJson);
}

}  // namespace Station
