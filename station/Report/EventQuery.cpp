#include "station/Report/EventQuery.h"

#include <algorithm>
#include <limits>
#include <variant>

namespace Station {
namespace {

using Value = std::variant<std::int64_t, std::string>;

// A filter in the words of the database, with its values.
struct Filter
{
    std::string sql = " WHERE 1";
    std::vector<Value> values;

    template <typename T>
    void AddTest(const std::string& test, const T& value)
    {
        sql += " AND " + test;
        values.emplace_back(value);
    }
    template <typename T>
    void AddChoice(const std::string& column, const std::vector<T>& choices)
    {
        if (choices.empty())
            return;
        sql += " AND " + column + " IN (";
        for (std::size_t i = 0; i < choices.size(); ++i) {
            sql += i == 0 ? "?" : ",?";
            values.emplace_back(choices[i]);
        }
        sql += ")";
    }
    void BindTo(Statement& statement) const
    {
        for (const Value& value : values) {
            if (const auto* number = std::get_if<std::int64_t>(&value))
                statement.Add(*number);
            else
                statement.Add(std::string_view(std::get<std::string>(value)));
        }
    }
    // Tells filters apart.
    std::string Key(std::int64_t page_size) const
    {
        std::string key = std::to_string(page_size) + sql;
        for (const Value& value : values) {
            const auto* number = std::get_if<std::int64_t>(&value);
            const std::string text =
                number != nullptr ? std::to_string(*number) : std::get<std::string>(value);
            key += "|" + std::to_string(text.size()) + ":" + text;
        }
        return key;
    }
};

std::string LikePattern(const std::string& text)
{
    std::string pattern = "%";
    for (const char letter : text) {
        if (letter == '%' || letter == '_' || letter == '\\')
            pattern += '\\';
        pattern += letter;
    }
    return pattern + "%";
}

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
