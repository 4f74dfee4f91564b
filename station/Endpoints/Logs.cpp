#include "station/Endpoints/Endpoints.h"
#include "station/Gathering/GatheredLogs.h"
#include "station/Http/FileAnswer.h"
#include "station/Making/Polls.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

namespace Station {
namespace {

using Json = nlohmann::ordered_json;

void OrderLogs(Call& call, const GatherRequest& request)
{
    const auto order = OrderOf(request, call.services);
    if (!order) {
        AnswerError(call.response, 200, StationBadCondition, "CameraIds names no camera of the site.");
        return;
    }
    const std::string guid = call.services.logs.Take(*order);
    if (guid.empty())
        AnswerError(call.response, 503, StationStoreFailed, "Too many orders for logs wait.");
    else
        AnswerJson(call, {{"ErrorModule", 0}, {"ErrorCode", 0}, {"FileGuid", guid}});
}

void AnswerGathering(Call& call, const std::string& guid)
{
    const auto report = call.services.logs.Poll(guid);
    if (!report) {
        AnswerError(call.response, 200, StationNoSuchObject, "There are no logs of that FileGuid.");
        return;
    }
    Json answer = {{"ErrorModule", 0}, {"ErrorCode", 0}, {"State", NameOf(report->state)}};
    if (report->state == WorkState::Ready) {
        answer["Files"] = Json::array();
        const std::string folder = "/api/v1/logs/" + guid + "/";
        for (const std::string& name : report->names)
            answer["Files"].push_back(folder + name);
    } else if (report->state == WorkState::Failed) {
        answer["ErrorText"] = report->failure;
    }
    AnswerJson(call, answer);
}

// The same call orders the logs and asks after them.
void GatherLogs(Call& call)
{
    nlohmann::json json;
    if (!ReadBody(call, json))
        return;
    GatherRequest request;
    std::string reason;
    if (!ReadGatherRequest(json, request, reason)) {
        AnswerError(call.response, 200, StationBadCondition, reason);
        return;
    }
    if (!PassesPasswordCheck(call, request.password_check))
        return;
    if (request.guid.empty())
        OrderLogs(call, request);
    else
        AnswerGathering(call, request.guid);
}

void AnswerLog(Call& call)
{
    const auto folder = call.services.logs.Find(call.name);
    const std::string& name = call.second_name;
    const auto source =
        folder && IsFileName(name) ? SourceOfFile(*folder / std::filesystem::u8path(name)) : std::nullopt;
    if (source)
        AnswerSource(call, *source);
    else
        AnswerError(call.response, 404, StationNoSuchObject, "There is no such log.");
}

}  // namespace

std::vector<Route> LogRoutes()
{
    return {{"POST", "/api/v1/logs/gather", GatherLogs}, {"GET", "/api/v1/logs/{guid}/{name}", AnswerLog}};
}

}  // namespace Station
