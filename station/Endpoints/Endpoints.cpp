#include "station/Endpoints/Endpoints.h"

#include "station/Report/Condition.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

namespace Station {
namespace {

using Json = nlohmann::ordered_json;

std::string ToText(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

void AnswerError(httplib::Response& response, int status, StationError code, const std::string& text)
{
    response.status = status;
    response.set_content(
        ToText({{"ErrorModule", kModuleStation}, {"ErrorCode", static_cast<int>(code)}, {"ErrorText", text}}),
        kJson);
}

void AnswerDone(Call& call)
{
    AnswerJson(call, {{"ErrorModule", 0}, {"ErrorCode", 0}});
}

void AnswerJson(Call& call, const Json& answer)
{
    call.response.set_content(ToText(answer), kJson);
}

bool ReadBody(Call& call, nlohmann::json& json)
{
    json = nlohmann::json::parse(call.request.body, nullptr, false);
    if (!json.is_discarded())
        return true;
    AnswerError(call.response, 400, StationBadCondition, "The body is no JSON text.");
    return false;
}

bool PassesPasswordCheck(Call& call, const PasswordCheck& check)
{
    if (!check.is_asked)
        return true;
    const AccountCheck::Verdict verdict =
        call.services.accounts.CheckCiphered(check.user_name, check.ciphered_password);
    if (verdict.refusal.empty())
        return true;
    constexpr int tries_left = 1;
    constexpr int minutes_closed = 2;
    const LoginTries::Remaining& remaining = verdict.remaining;
    const bool is_closed = remaining.closed_seconds > 0;
    AnswerJson(call, {{"ErrorModule", kModuleStation},
                      {"ErrorCode", static_cast<int>(StationWrongAccount)},
                      {"ErrorText", verdict.refusal},
                      {"RemainingLoginNumber",
                       is_closed ? (remaining.closed_seconds + 59) / 60 : std::int64_t{remaining.tries}},
                      {"RemainingLoginType", is_closed ? minutes_closed : tries_left}});
    return false;
}

}  // namespace Station
