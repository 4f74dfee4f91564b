#include "station/Endpoints/Endpoints.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace Station {
namespace {

void AnswerSyntheticPage(Call& call)
{
    nlohmann::json json;
    if (!ReadBody(call, json))
        return;
    std::string reason;
    if (!call.services.synthetic.Render(json, call.response.body, reason)) {
        AnswerError(call.response, 200, StationBadCondition, reason);
        return;
    }
    call.response.set_header("Content-Type", kJson);
}

// "<page>-<row>-<picture>.jpg", all numbers.
bool IsSyntheticName(const std::string& name)
{
    constexpr std::string_view kEnd = ".jpg";
    if (name.size() <= kEnd.size() || name.compare(name.size() - kEnd.size(), kEnd.size(), kEnd) != 0)
        return false;
    const std::string_view stem(name.data(), name.size() - kEnd.size());
    return std::count(stem.begin(), stem.end(), '-') == 2 &&
           stem.find_first_not_of("0123456789-") == std::string_view::npos;
}

void AnswerSyntheticPicture(Call& call)
{
    if (!IsSyntheticName(call.name)) {
        AnswerError(call.response, 404, StationNoSuchObject, "There is no picture " + call.name + ".");
        return;
    }
    call.response.set_content(call.services.pictures.Synthetic(), "image/jpeg");
}

}  // namespace

std::vector<Route> SyntheticRoutes()
{
    return {{"POST", "/api/v1/synthetic/report", AnswerSyntheticPage},
            {"GET", "/synthetic/pictures/{name}", AnswerSyntheticPicture}};
}

}  // namespace Station
