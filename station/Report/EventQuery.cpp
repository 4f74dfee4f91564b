#include "station/Report/EventQuery.h"

#include "station/Report/Filter.h"

#include <algorithm>
#include <limits>

namespace Station {
namespace {

Filter MakeFilter(const ReportCondition& condition)
{
    Filter filter;
    if (condition.begin)
        filter.AddTest("e.time >= ?", *condition.begin);
    if (condition.end)
        filter.AddTest("e.time < ?", *condition.end);
    if (condition.min_level > 1)
        filter.AddTest("e.level >= ?", condition.min_level);
    filter.AddChoice("e.camera", condition.camera_ids);
    filter.AddChoice("e.type", condition.event_types);
    if (!condition.text.empty())
        filter.AddTest("(e.text || char(10) || e.person || char(10) || e.plate) LIKE ? ESCAPE '\\'",
                       LikePattern(condition.text));
    return filter;
}

}  // namespace

EventPage ReadEventPage(Database& database, PageCursors& cursors, const ReportCondition& condition)
{
    EventPage page;
    page.first_row = (condition.page_index - 1) * condition.page_size;
    const std::int64_t limit = condition.limit.value_or(std::numeric_limits<std::int64_t>::max());
    const std::int64_t wanted = std::clamp<std::int64_t>(limit - page.first_row, 0, condition.page_size);
    const Filter filter = MakeFilter(condition);
    const std::string key = filter.Key(condition.page_size);
    const auto cursor = cursors.Find(key, condition.page_index - 1);
    const std::string start = cursor ? " AND (e.time, e.id) > (?, ?)" : "";
    Statement query = database.Prepare(std::string("SELECT ") + kEventColumns + " FROM " + kEventTables +
                                       filter.sql + start + " ORDER BY e.time, e.id LIMIT ? OFFSET ?");
    filter.BindTo(query);
    if (cursor)
        query.Add(cursor->time).Add(cursor->id);
    // One more than wanted tells whether this is the last page.
    query.Add(wanted + 1).Add(cursor ? std::int64_t{0} : page.first_row);
    page.events.reserve(static_cast<std::size_t>(wanted));
    page.is_last = true;
    while (query.Step()) {
        if (static_cast<std::int64_t>(page.events.size()) == wanted) {
            page.is_last = page.first_row + wanted >= limit;
            break;
        }
        page.events.push_back(ReadEvent(query));
    }
    if (static_cast<std::int64_t>(page.events.size()) == condition.page_size)
        cursors.Remember(key, condition.page_index, {page.events.back().time, page.events.back().id});
    return page;
}

void ReadEvents(Database& database, const ReportCondition& condition,
                const std::function<bool(const Event& event)>& take)
{
    const Filter filter = MakeFilter(condition);
    Statement query = database.Prepare(std::string("SELECT ") + kEventColumns + " FROM " + kEventTables +
                                       filter.sql + " ORDER BY e.time, e.id LIMIT ?");
    filter.BindTo(query);
    query.Add(condition.limit.value_or(-1));
    while (query.Step() && take(ReadEvent(query))) {
    }
}

std::int64_t CountEvents(Database& database, const ReportCondition& condition)
{
    const Filter filter = MakeFilter(condition);
    Statement query = database.Prepare("SELECT count(*) FROM events e" + filter.sql);
    filter.BindTo(query);
    query.Step();
    return std::min(query.Int(0), condition.limit.value_or(std::numeric_limits<std::int64_t>::max()));
}

}  // namespace Station
