#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Points in time, as seconds since 1970 in UTC.
namespace Station {

struct Calendar
{
    int year = 1970;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int weekday = 4;  // 0 is Sunday
};

Calendar ToCalendar(std::int64_t time);
std::int64_t FromCalendar(const Calendar& calendar);

std::int64_t Now();
// "2026-01-31 09:05:07"
std::string FormatTime(std::int64_t time);
// "2026-01-31T09:05:07Z"
std::string FormatIsoTime(std::int64_t time);
// "20260131-090507": fit for a file name.
std::string FormatTimeForFile(std::int64_t time);
// ISO 8601: "2026-01-31T09:05:07Z", with a fraction, an offset or a blank for the "T" too, or the date alone.
std::optional<std::int64_t> ParseTime(std::string_view text);
// "2026:01:31 09:05:07", as cameras write it into photographs.
std::optional<std::int64_t> ParsePhotographTime(std::string_view text);

}  // namespace Station
