#include "station/Endpoints/Endpoints.h"
#include "station/Report/PersonSearch.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

namespace Station {
namespace {

using Json = nlohmann::ordered_json;

Json ToJson(const PersonPage& page)
{
    Json persons = Json::array();
    for (const FoundPerson& person : page.persons) {
        Json pictures = Json::array();
        for (const PictureOfPerson& picture : person.pictures)
            pictures.push_back({{"Title", picture.title}, {"Address", picture.address}});
        persons.push_back(
            {{"PersonId", person.id}, {"Name", person.name}, {"Pictures", std::move(pictures)}});
    }
    return {{"ErrorModule", 0},
            {"ErrorCode", 0},
            {"TotalPageIsFinished", page.is_last},
            {"Persons", std::move(persons)}};
}

void AnswerPersonPage(Call& call)
{
    nlohmann::json json;
    if (!ReadBody(call, json))
        return;
    PersonCondition condition;
    std::string reason;
    if (!ReadPersonCondition(json, condition, reason)) {
        AnswerError(call.response, 200, StationBadCondition, reason);
        return;
    }
    if (!PassesPasswordCheck(call, condition.password_check))
        return;
    const Store::Loan database = call.services.store.Borrow();
    AnswerJson(call, ToJson(ReadPersonPage(*database, condition)));
}

}  // namespace

std::vector<Route> PersonRoutes()
{
    return {{"POST", "/api/v1/persons/report", AnswerPersonPage}};
}

}  // namespace Station
