#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ZellTaskKit {

// A point in time as its text gives it; offset is absent where the text says nothing of one.
struct IsoTime
{
    int year = 0;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    std::optional<int> offset_seconds;
};

std::optional<IsoTime> ParseIsoTime(std::string_view text);
// Seconds since 1970; without an offset by the local time zone. Nothing if the platform can't tell.
std::optional<std::int64_t> SecondsSince1970(const IsoTime& time);

}  // namespace ZellTaskKit
