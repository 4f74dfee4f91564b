#include "station/Endpoints/Endpoints.h"
#include "station/Report/ReportPage.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

namespace Station {
namespace {

void AnswerEventPage(Call& call)
{
    nlohmann::json json;
    if (!ReadBody(call, json))
        return;
    ReportCondition condition;
    std::string reason;
    if (!ReadCondition(json, condition, reason)) {
        AnswerError(call.response, 200, StationBadCondition, reason);
        return;
    }
    if (!PassesPasswordCheck(call, condition.password_check))
        return;
    const Store::Loan database = call.services.store.Borrow();
    const EventPage page = ReadEventPage(*database, call.services.cursors, condition);
    const std::int64_t total = condition.page_index == 1 ? CountEvents(*database, condition) : 0;
    call.response.body = RenderReportPage(condition, page, total);
    call.response.set_header("Content-Type", kJson);
}

void AnswerUnknownReport(Call& call)
{
    AnswerError(call.response, 200, StationUnknownReport, "There is no report of " + call.name + ".");
}

}  // namespace

std::vector<Route> ReportRoutes()
{
    return {{"POST", "/api/v1/events/report", AnswerEventPage},
            {"POST", "/api/v1/{name}/report", AnswerUnknownReport}};
}

}  // namespace Station
