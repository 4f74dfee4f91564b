#pragma once

#include "station/Data/Store.h"
#include "station/Report/Condition.h"
#include "station/Report/PageCursors.h"

#include <functional>
#include <vector>

namespace Station {

struct EventPage
{
    std::int64_t first_row = 0;  // number of rows on the pages before
    bool is_last = false;
    std::vector<Event> events;
};

// Events in the order of time and number, so that pages never overlap. Throws StoreError.
EventPage ReadEventPage(Database& database, PageCursors& cursors, const ReportCondition& condition);
// Reads the events of a whole report in the same order, one at a time, until take answers false. Throws
// StoreError.
void ReadEvents(Database& database, const ReportCondition& condition,
                const std::function<bool(const Event& event)>& take);
// Rows of the whole report.
std::int64_t CountEvents(Database& database, const ReportCondition& condition);

}  // namespace Station
