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
    std::string reason;
    if (!check.is_asked ||
        call.services.accounts.IsRightCiphered(check.user_name, check.ciphered_password, reason))
        return true;
    AnswerError(call.response, 200, StationWrongAccount, reason);
    return false;
}

}  // namespace Station
