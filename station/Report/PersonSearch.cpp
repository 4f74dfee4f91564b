#include "station/Report/PersonSearch.h"

#include "station/Clock.h"
#include "station/Data/Store.h"
#include "station/Report/EventTable.h"
#include "station/Report/Filter.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>

namespace Station {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();

// A number that may be left out.
bool ReadOptional(const nlohmann::json& json, const char* name, std::int64_t least,
                  std::optional<std::int64_t>& value, std::string& reason)
{
    std::int64_t number = least - 1;
    if (!ReadNumber(json, name, least, kMost, number, reason))
        return false;
    if (number >= least)
        value = number;
    return true;
}

Filter MakeFilter(const PersonCondition& condition)
{
    Filter filter;
    filter.sql += " AND e.person <> ''";
    if (condition.begin)
        filter.AddTest("e.time >= ?", *condition.begin);
    if (condition.end)
        filter.AddTest("e.time < ?", *condition.end);
    filter.AddChoice("e.camera", condition.camera_ids);
    if (condition.min_confidence > 0)
        filter.AddTest("e.confidence >= ?", condition.min_confidence);
    if (!condition.text.empty())
        filter.AddTest("e.person LIKE ? ESCAPE '\\'", LikePattern(condition.text));
    if (!condition.person_ids.empty()) {
        filter.sql += " AND e.person IN (SELECT f.person FROM events f WHERE 1";
        filter.AddChoice("f.id", condition.person_ids);
        filter.sql += ")";
    }
    return filter;
}

std::string PageQuery(const Filter& filter, bool has_most_of_person)
{
    const std::string rows =
        "SELECT e.id AS id, e.time AS time, e.person AS person, e.picture AS picture" +
        std::string(has_most_of_person ? ", row_number() OVER (PARTITION BY e.person ORDER BY e.time, e.id)"
                                         " AS number"
                                       : "") +
        " FROM events e" + filter.sql;
    const std::string order = " ORDER BY person, time, id LIMIT ? OFFSET ?";
    if (!has_most_of_person)
        return rows + order;
    return "SELECT id, time, person, picture FROM (" + rows + ") WHERE number <= ?" + order;
}

Event ReadPictureEvent(const Statement& query)
{
    Event event;
    event.id = query.Int(0);
    event.time = query.Int(1);
    event.person = query.Text(2);
    event.picture = query.Text(3);
    return event;
}

void AddPicture(const Event& event, PersonPage& page)
{
    if (page.persons.empty() || page.persons.back().name != event.person)
        page.persons.push_back({0, event.person, {}});
    const std::string title =
        event.person + "_" + FormatTimeForFile(event.time) + "_" + std::to_string(event.id);
    page.persons.back().pictures.push_back({ToFileStem(title), PictureAddress(event)});
}

std::int64_t IdOfPerson(Database& database, const std::string& name)
{
    Statement query = database.Prepare("SELECT min(id) FROM events WHERE person <> '' AND person = ?");
    query.Add(std::string_view(name));
    query.Step();
    return query.Int(0);
}

}  // namespace

bool ReadPersonCondition(const nlohmann::json& json, PersonCondition& condition, std::string& reason)
{
    if (!json.is_object()) {
        reason = "The condition must be an object.";
        return false;
    }
    return HasPage(json, reason) && ReadNumber(json, "PageIndex", 1, kMost, condition.page_index, reason) &&
           ReadNumber(json, "PageSize", 1, kMostRowsOfPage, condition.page_size, reason) &&
           ReadNumbers(json, "PersonIds", condition.person_ids, reason) &&
           ReadText(json, "Text", condition.text, reason) &&
           ReadPointInTime(json, "BeginTime", condition.begin, reason) &&
           ReadPointInTime(json, "EndTime", condition.end, reason) &&
           ReadNumbers(json, "CameraIds", condition.camera_ids, reason) &&
           ReadNumber(json, "MinConfidence", 0, 100, condition.min_confidence, reason) &&
           ReadOptional(json, "PicturesOfPerson", 1, condition.pictures_of_person, reason) &&
           ReadOptional(json, "Limit", 0, condition.limit, reason) &&
           ReadPasswordCheck(json, condition.password_check, reason);
}

PersonPage ReadPersonPage(Database& database, const PersonCondition& condition)
{
    const std::int64_t first = (condition.page_index - 1) * condition.page_size;
    const std::int64_t limit = condition.limit.value_or(std::numeric_limits<std::int64_t>::max());
    const std::int64_t wanted = std::clamp<std::int64_t>(limit - first, 0, condition.page_size);
    PersonPage page;
    page.is_last = true;
    {
        const Filter filter = MakeFilter(condition);
        Statement query = database.Prepare(PageQuery(filter, condition.pictures_of_person.has_value()));
        filter.BindTo(query);
        if (condition.pictures_of_person)
            query.Add(*condition.pictures_of_person);
        // One more than wanted tells whether this is the last page.
        query.Add(wanted + 1).Add(first);
        std::int64_t count = 0;
        while (query.Step()) {
            if (count++ == wanted) {
                page.is_last = first + wanted >= limit;
                break;
            }
            AddPicture(ReadPictureEvent(query), page);
        }
    }
    for (FoundPerson& person : page.persons)
        person.id = IdOfPerson(database, person.name);
    return page;
}

void EnsurePersons(Database& database)
{
    database.Run(
        "CREATE INDEX IF NOT EXISTS events_by_person ON events(person, time, id) WHERE person <> ''");
}

}  // namespace Station
