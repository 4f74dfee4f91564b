#pragma once

#include "station/Report/Condition.h"
#include "station/Report/EventQuery.h"

#include <cstdint>
#include <string>

namespace Station {

// The answer of one page of the alarm report, as JSON. total is looked at on page 1 only.
std::string RenderReportPage(const ReportCondition& condition, const EventPage& page, std::int64_t total);

}  // namespace Station
