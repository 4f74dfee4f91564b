#include "station/Clock.h"

#include <chrono>
#include <cstdio>

namespace Station {
namespace {

constexpr std::int64_t kDay = 86400;

// Days since 1970 of a date of the Gregorian calendar.
std::int64_t DaysFromDate(std::int64_t year, int month, int day)
{
    year -= month <= 2 ? 1 : 0;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const std::int64_t year_of_era = year - era * 400;
    const std::int64_t day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year - 719468;
}

int DaysOfMonth(int year, int month)
{
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool is_leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && is_leap ? 29 : kDays[month - 1];
}

bool IsReal(const Calendar& c)
{
    return c.year >= 1900 && c.year <= 9999 && c.month >= 1 && c.month <= 12 && c.day >= 1 &&
           c.day <= DaysOfMonth(c.year, c.month) && c.hour >= 0 && c.hour < 24 && c.minute >= 0 &&
           c.minute < 60 && c.second >= 0 && c.second < 60;
}

// Reads exactly so many digits.
bool TakeNumber(std::string_view& text, std::size_t digits, int& value)
{
    if (text.size() < digits)
        return false;
    value = 0;
    for (std::size_t i = 0; i < digits; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
        value = value * 10 + (text[i] - '0');
    }
    text.remove_prefix(digits);
    return true;
}

bool TakeOneOf(std::string_view& text, std::string_view choices)
{
    if (text.empty() || choices.find(text.front()) == std::string_view::npos)
        return false;
    text.remove_prefix(1);
    return true;
}

bool TakeDate(std::string_view& text, std::string_view separator, Calendar& c)
{
    return TakeNumber(text, 4, c.year) && TakeOneOf(text, separator) && TakeNumber(text, 2, c.month) &&
           TakeOneOf(text, separator) && TakeNumber(text, 2, c.day);
}

bool TakeClock(std::string_view& text, Calendar& c)
{
    return TakeNumber(text, 2, c.hour) && TakeOneOf(text, ":") && TakeNumber(text, 2, c.minute) &&
           TakeOneOf(text, ":") && TakeNumber(text, 2, c.second);
}

// Seconds east of UTC; absent means UTC.
bool TakeOffset(std::string_view& text, std::int64_t& offset)
{
    offset = 0;
    if (text.empty() || TakeOneOf(text, "Zz"))
        return true;
    const bool is_west = text.front() == '-';
    int hours = 0;
    int minutes = 0;
    if (!TakeOneOf(text, "+-") || !TakeNumber(text, 2, hours))
        return false;
    TakeOneOf(text, ":");
    if (!text.empty() && !TakeNumber(text, 2, minutes))
        return false;
    offset = (is_west ? -1 : 1) * (std::int64_t{hours} * 3600 + minutes * 60L);
    return hours < 24 && minutes < 60;
}

void SkipFraction(std::string_view& text)
{
    if (!TakeOneOf(text, ".,"))
        return;
    while (TakeOneOf(text, "0123456789")) {
    }
}

}  // namespace

Calendar ToCalendar(std::int64_t time)
{
    const std::int64_t days = (time >= 0 ? time : time - (kDay - 1)) / kDay;
    const std::int64_t rest = time - days * kDay;
    const std::int64_t shifted = days + 719468;
    const std::int64_t era = (shifted >= 0 ? shifted : shifted - 146096) / 146097;
    const std::int64_t day_of_era = shifted - era * 146097;
    const std::int64_t year_of_era =
        (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
    const std::int64_t day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
    const std::int64_t shifted_month = (5 * day_of_year + 2) / 153;
    Calendar c;
    c.day = static_cast<int>(day_of_year - (153 * shifted_month + 2) / 5 + 1);
    c.month = static_cast<int>(shifted_month < 10 ? shifted_month + 3 : shifted_month - 9);
    c.year = static_cast<int>(year_of_era + era * 400 + (c.month <= 2 ? 1 : 0));
    c.hour = static_cast<int>(rest / 3600);
    c.minute = static_cast<int>(rest / 60 % 60);
    c.second = static_cast<int>(rest % 60);
    c.weekday = static_cast<int>(((days + 4) % 7 + 7) % 7);
    return c;
}

std::int64_t FromCalendar(const Calendar& c)
{
    return DaysFromDate(c.year, c.month, c.day) * kDay + c.hour * 3600L + c.minute * 60L + c.second;
}

std::int64_t Now()
{
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

std::string FormatTime(std::int64_t time)
{
    const Calendar c = ToCalendar(time);
    char text[80];
    std::snprintf(text, sizeof(text), "%04d-%02d-%02d %02d:%02d:%02d", c.year, c.month, c.day, c.hour,
                  c.minute, c.second);
    return text;
}

std::string FormatIsoTime(std::int64_t time)
{
    std::string text = FormatTime(time) + "Z";
    text[text.find(' ')] = 'T';
    return text;
}

std::string FormatTimeForFile(std::int64_t time)
{
    const Calendar c = ToCalendar(time);
    char text[80];
    std::snprintf(text, sizeof(text), "%04d%02d%02d-%02d%02d%02d", c.year, c.month, c.day, c.hour, c.minute,
                  c.second);
    return text;
}

std::optional<std::int64_t> ParseTime(std::string_view text)
{
    Calendar c;
    std::int64_t offset = 0;
    if (!TakeDate(text, "-", c))
        return std::nullopt;
    if (!text.empty()) {
        if (!TakeOneOf(text, "Tt ") || !TakeClock(text, c))
            return std::nullopt;
        SkipFraction(text);
        if (!TakeOffset(text, offset) || !text.empty())
            return std::nullopt;
    }
    if (!IsReal(c))
        return std::nullopt;
    return FromCalendar(c) - offset;
}

std::optional<std::int64_t> ParsePhotographTime(std::string_view text)
{
    Calendar c;
    if (!TakeDate(text, ":", c) || !TakeOneOf(text, " ") || !TakeClock(text, c) || !IsReal(c))
        return std::nullopt;
    return FromCalendar(c);
}

}  // namespace Station
