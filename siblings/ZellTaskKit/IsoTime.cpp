#include "IsoTime.h"

#include <ctime>

namespace ZellTaskKit {
namespace {

constexpr int kSecondsOfDay = 86400;

// Reads a text from its head; every read that does not fit leaves the text as it was.
class Reader
{
public:
    explicit Reader(std::string_view text) : text_(text) {}

    bool AtEnd() const { return text_.empty(); }
    bool StartsWithDigit() const { return !text_.empty() && text_.front() >= '0' && text_.front() <= '9'; }

    bool Take(char letter)
    {
        if (text_.empty() || text_.front() != letter)
            return false;
        text_.remove_prefix(1);
        return true;
    }

    bool TakeNumber(std::size_t digits, int low, int high, int& number)
    {
        if (text_.size() < digits)
            return false;
        int value = 0;
        for (const char digit : text_.substr(0, digits)) {
            if (digit < '0' || digit > '9')
                return false;
            value = value * 10 + (digit - '0');
        }
        if (value < low || value > high)
            return false;
        number = value;
        text_.remove_prefix(digits);
        return true;
    }

    bool SkipDigits()
    {
        if (!StartsWithDigit())
            return false;
        while (StartsWithDigit())
            text_.remove_prefix(1);
        return true;
    }

private:
    std::string_view text_;
};

bool IsLeapYear(int year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int DaysOfMonth(int year, int month)
{
    if (month == 2)
        return IsLeapYear(year) ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

bool TakeDate(Reader& reader, IsoTime& time)
{
    if (!reader.TakeNumber(4, 1, 9999, time.year))
        return false;
    const bool dashes = reader.Take('-');
    if (!reader.TakeNumber(2, 1, 12, time.month))
        return false;
    if (dashes && !reader.Take('-'))
        return false;
    return reader.TakeNumber(2, 1, DaysOfMonth(time.year, time.month), time.day);
}

bool TakeFraction(Reader& reader)
{
    if (!reader.Take('.') && !reader.Take(','))
        return true;
    return reader.SkipDigits();
}

// With colons or without, but not mixed.
bool TakeTimeOfDay(Reader& reader, IsoTime& time)
{
    if (!reader.TakeNumber(2, 0, 24, time.hour))
        return false;
    const bool colons = reader.Take(':');
    if (!reader.TakeNumber(2, 0, 59, time.minute))
        return false;
    const bool has_seconds = colons ? reader.Take(':') : reader.StartsWithDigit();
    if (has_seconds && (!reader.TakeNumber(2, 0, 60, time.second) || !TakeFraction(reader)))
        return false;
    return time.hour < 24 || (time.minute == 0 && time.second == 0);
}

bool TakeOffset(Reader& reader, IsoTime& time)
{
    if (reader.Take('Z') || reader.Take('z')) {
        time.offset_seconds = 0;
        return true;
    }
    const bool west = reader.Take('-');
    if (!west && !reader.Take('+'))
        return true;
    int hours = 0;
    int minutes = 0;
    if (!reader.TakeNumber(2, 0, 23, hours))
        return false;
    if ((reader.Take(':') || reader.StartsWithDigit()) && !reader.TakeNumber(2, 0, 59, minutes))
        return false;
    const int seconds = hours * 3600 + minutes * 60;
    time.offset_seconds = west ? -seconds : seconds;
    return true;
}

// Days from 1970-01-01 in the Gregorian calendar. Years are counted from March, so that a leap day is the
// last day of its year.
std::int64_t DaysSince1970(int year, int month, int day)
{
    const std::int64_t shifted_year = month <= 2 ? year - 1 : year;
    const std::int64_t era = shifted_year / 400;
    const std::int64_t year_of_era = shifted_year - era * 400;
    const std::int64_t day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const std::int64_t day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
    return era * 146097 + day_of_era - 719468;
}

std::optional<std::int64_t> LocalSeconds(const IsoTime& time)
{
    std::tm parts{};
    parts.tm_year = time.year - 1900;
    parts.tm_mon = time.month - 1;
    parts.tm_mday = time.day;
    parts.tm_hour = time.hour;
    parts.tm_min = time.minute;
    parts.tm_sec = time.second;
    parts.tm_isdst = -1;
    parts.tm_wday = -1;  // -1 is also a time, so success is told by what the call fills in
    const std::time_t seconds = std::mktime(&parts);
    if (parts.tm_wday < 0)
        return std::nullopt;
    return static_cast<std::int64_t>(seconds);
}

}  // namespace

std::optional<IsoTime> ParseIsoTime(std::string_view text)
{
    Reader reader(text);
    IsoTime time;
    if (!TakeDate(reader, time))
        return std::nullopt;
    if (reader.AtEnd())
        return time;
    if (!reader.Take('T') && !reader.Take('t') && !reader.Take(' '))
        return std::nullopt;
    if (!TakeTimeOfDay(reader, time) || !TakeOffset(reader, time) || !reader.AtEnd())
        return std::nullopt;
    return time;
}

std::optional<std::int64_t> SecondsSince1970(const IsoTime& time)
{
    if (!time.offset_seconds)
        return LocalSeconds(time);
    return DaysSince1970(time.year, time.month, time.day) * kSecondsOfDay + time.hour * 3600L +
           time.minute * 60L + time.second - *time.offset_seconds;
}

}  // namespace ZellTaskKit
