#include "station/Endpoints/Endpoints.h"
#include "station/Report/ReportPage.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

namespace Station {
namespace {

// Answers a wrong account; true if the condition asks for no check or names the right one.
bool PassesPasswordCheck(Call& call, const ReportCondition& condition)
{
    std::string reason;
    if (!condition.has_password_check ||
        call.services.accounts.IsRightCiphered(condition.user_name, condition.ciphered_password, reason))
        return true;
    AnswerError(call.response, 200, StationWrongAccount, reason);
    return false;
}

void AnswerEventPage(Call& call)
{
    const nlohmann::json json = nlohmann::json::parse(call.request.body, nullptr, false);
    if (json.is_discarded()) {
        AnswerError(call.response, 400, StationBadCondition, "The condition is no JSON text.");
        return;
    }
    ReportCondition condition;
    std::string reason;
    if (!ReadCondition(json, condition, reason)) {
        AnswerError(call.response, 200, StationBadCondition, reason);
        return;
    }
    if (!PassesPasswordCheck(call, condition))
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
