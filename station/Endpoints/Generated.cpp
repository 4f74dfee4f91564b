#include "station/Endpoints/Endpoints.h"
#include "station/Generated/GeneratedReport.h"
#include "station/Http/FileAnswer.h"
#include "station/Making/Polls.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

namespace Station {
namespace {

using Json = nlohmann::ordered_json;
constexpr char kPath[] = "/api/v1/generated/";

// A call that the client makes with nothing but what stands here.
Json CallForTask(const std::string& api, const std::string& guid)
{
    return {{"Method", "POST"}, {"Api", kPath + api}, {"Request", Json{{"TaskId", guid}}.dump()}};
}

// The note says for which paper the page is.
Json DownloadCall(const std::string& guid, const std::string& note)
{
    Json download = {{"Method", "GET"}, {"Api", kPath + guid + "/file"}, {"Pattern", 1}};
    download.update(Json::parse(note));
    return download;
}

void AnswerOrdered(Call& call, const std::string& guid, const std::string& note, bool is_created)
{
    AnswerJson(call, {{"ErrorModule", 0},
                      {"ErrorCode", 0},
                      {"IsRowColumnData", false},
                      {"ServerGenerate",
                       {{"FileIsCreated", is_created},
                        {"TaskId", guid},
                        {"Query", CallForTask("state", guid)},
                        {"Download", DownloadCall(guid, note)},
                        {"DeleteCache", CallForTask("delete-cache", guid)},
                        {"Operate", {{"Method", "POST"}, {"Api", std::string(kPath) + "operate"}}}}}});
}

void OrderReport(Call& call)
{
    nlohmann::json json;
    if (!ReadBody(call, json))
        return;
    GeneratedReportRequest request;
    std::string reason;
    if (!ReadGeneratedReportRequest(json, request, reason)) {
        AnswerError(call.response, 200, StationBadCondition, reason);
        return;
    }
    if (!PassesPasswordCheck(call, request.condition.password_check))
        return;
    Workshop& reports = call.services.reports;
    const WorkOrder order = OrderOf(request, call.services);
    const std::string guid = reports.Take(order);
    if (guid.empty()) {
        AnswerError(call.response, 503, StationStoreFailed, "Too many reports wait to be generated.");
        return;
    }
    if (order.ready_after_polls > 0 || order.fail_after_polls) {
        AnswerOrdered(call, guid, order.note, false);
        return;
    }
    reports.WaitUntilDone(guid);
    if (reports.Find(guid)) {
        AnswerOrdered(call, guid, order.note, true);
        return;
    }
    const auto report = reports.Poll(guid);
    reports.Drop(guid);
    const std::string failure = report ? report->failure : "";
    AnswerError(call.response, 500, StationStoreFailed,
                failure.empty() ? "The report was not made." : failure);
}

// The task that the body names; answers the refusal if there is none.
bool ReadTaskId(Call& call, nlohmann::json& json, std::string& guid)
{
    if (!ReadBody(call, json))
        return false;
    std::string reason;
    if (!json.is_object())
        reason = "The body must be an object.";
    else if (ReadText(json, "TaskId", guid, reason) && guid.empty())
        reason = "TaskId is missing.";
    if (reason.empty())
        return true;
    AnswerError(call.response, 200, StationBadCondition, reason);
    return false;
}

void AnswerNoTask(Call& call)
{
    AnswerError(call.response, 200, StationNoSuchObject, "There is no such task.");
}

void AnswerState(Call& call)
{
    nlohmann::json json;
    std::string guid;
    if (!ReadTaskId(call, json, guid))
        return;
    const auto report = call.services.reports.Poll(guid);
    if (!report) {
        AnswerNoTask(call);
        return;
    }
    Json answer = {
        {"ErrorModule", 0}, {"ErrorCode", 0}, {"State", NameOf(report->state)}, {"Rows", report->rows}};
    if (report->state == WorkState::Ready) {
        answer["Download"] = DownloadCall(guid, report->note);
        answer["DeleteCache"] = CallForTask("delete-cache", guid);
    } else if (report->state == WorkState::Failed) {
        answer["ErrorText"] = report->failure;
    }
    AnswerJson(call, answer);
}

void DeleteCache(Call& call)
{
    nlohmann::json json;
    std::string guid;
    if (!ReadTaskId(call, json, guid))
        return;
    if (call.services.reports.Drop(guid))
        AnswerDone(call);
    else
        AnswerNoTask(call);
}

void Operate(Call& call)
{
    constexpr std::int64_t kStop = 1;
    constexpr std::int64_t kDelete = 2;
    nlohmann::json json;
    std::string guid;
    if (!ReadTaskId(call, json, guid))
        return;
    std::int64_t type = 0;
    std::string reason = "OperateType is missing.";
    if (!ReadNumber(json, "OperateType", kStop, kDelete, type, reason) || type == 0) {
        AnswerError(call.response, 200, StationBadCondition, reason);
        return;
    }
    // A deleted report is told of as stopped for a while: its client may be in the middle of a poll, and a
    // task that is not known would look like a failure there.
    if (call.services.reports.Stop(guid))
        AnswerDone(call);
    else
        AnswerNoTask(call);
}

void AnswerGeneratedFile(Call& call)
{
    const auto path = call.services.reports.Find(call.name);
    auto source = path ? SourceOfFile(*path) : std::nullopt;
    if (!source) {
        AnswerError(call.response, 404, StationNoSuchObject, "There is no generated file " + call.name + ".");
        return;
    }
    source->type = ContentTypeOf(path->extension().u8string());
    AnswerSource(call, *source);
}

}  // namespace

std::vector<Route> GeneratedRoutes()
{
    return {{"POST", "/api/v1/events/generated-report", OrderReport},
            {"POST", "/api/v1/generated/state", AnswerState},
            {"POST", "/api/v1/generated/delete-cache", DeleteCache},
            {"POST", "/api/v1/generated/operate", Operate},
            {"GET", "/api/v1/generated/{guid}/file", AnswerGeneratedFile}};
}

}  // namespace Station
