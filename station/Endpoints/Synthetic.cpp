#include "station/Endpoints/Endpoints.h"
#include "station/Report/Condition.h"
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

constexpr std::int64_t kMostPersonsOfPage = 1000;
constexpr std::int64_t kMostPersons = 1000000000;
constexpr std::int64_t kMostPicturesOfPerson = 100;

struct PersonShape
{
    std::int64_t page = 1;
    std::int64_t page_size = 20;  // persons
    std::int64_t persons = 1000;
    std::int64_t pictures = 5;  // of each
};

bool ReadPersonShape(const nlohmann::json& json, PersonShape& shape, std::string& reason)
{
    if (!json.is_object()) {
        reason = "The condition must be an object.";
        return false;
    }
    return ReadNumber(json, "PageIndex", 1, kMostPersons, shape.page, reason) &&
           ReadNumber(json, "PageSize", 1, kMostPersonsOfPage, shape.page_size, reason) &&
           ReadNumber(json, "Persons", 0, kMostPersons, shape.persons, reason) &&
           ReadNumber(json, "Pictures", 0, kMostPicturesOfPerson, shape.pictures, reason);
}

nlohmann::ordered_json DrawPerson(const PersonShape& shape, std::int64_t id, std::int64_t line)
{
    nlohmann::ordered_json pictures = nlohmann::ordered_json::array();
    for (std::int64_t picture = 1; picture <= shape.pictures; ++picture) {
        const std::string name =
            std::to_string(shape.page) + "-" + std::to_string(line) + "-" + std::to_string(picture);
        pictures.push_back({{"Title", name}, {"Address", "/synthetic/pictures/" + name + ".jpg"}});
    }
    return {{"PersonId", id}, {"Name", "Person " + std::to_string(id)}, {"Pictures", std::move(pictures)}};
}

void AnswerSyntheticPersons(Call& call)
{
    nlohmann::json json;
    if (!ReadBody(call, json))
        return;
    PersonShape shape;
    std::string reason;
    if (!ReadPersonShape(json, shape, reason)) {
        AnswerError(call.response, 200, StationBadCondition, reason);
        return;
    }
    const std::int64_t before = (shape.page - 1) * shape.page_size;
    nlohmann::ordered_json persons = nlohmann::ordered_json::array();
    for (std::int64_t line = 1; line <= shape.page_size && before + line <= shape.persons; ++line)
        persons.push_back(DrawPerson(shape, before + line, line));
    AnswerJson(call, {{"ErrorModule", 0},
                      {"ErrorCode", 0},
                      {"TotalPageIsFinished", before + shape.page_size >= shape.persons},
                      {"Persons", std::move(persons)}});
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
            {"POST", "/api/v1/synthetic/persons", AnswerSyntheticPersons},
            {"GET", "/synthetic/pictures/{name}", AnswerSyntheticPicture}};
}

}  // namespace Station
