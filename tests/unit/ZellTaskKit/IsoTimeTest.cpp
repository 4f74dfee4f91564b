#include "ZellTaskKit/ClientServices.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

std::int64_t Seconds(const std::string& text)
{
    return ZellTaskKit::CTimeZoneManager::Instance().ISOTimeToTimeT(text);
}

std::int64_t Local(int year, int month, int day, int hour, int minute, int second)
{
    std::tm parts = {};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1;
    return std::mktime(&parts);
}

TEST(IsoTime, UtcIsReadWithAndWithoutFraction)
{
    EXPECT_EQ(Seconds("1970-01-01T00:00:00Z"), 0);
    EXPECT_EQ(Seconds("1970-01-01T00:00:01Z"), 1);
    EXPECT_EQ(Seconds("2026-01-31T23:59:59Z"), 1769903999);
    EXPECT_EQ(Seconds("2026-01-31T23:59:59.999Z"), 1769903999);
    EXPECT_EQ(Seconds("2026-01-31T23:59:59,5z"), 1769903999);
    EXPECT_EQ(Seconds("1969-12-31T23:59:59Z"), -1);
}

TEST(IsoTime, AnOffsetIsTakenAway)
{
    EXPECT_EQ(Seconds("2026-02-01T07:59:59+08:00"), 1769903999);
    EXPECT_EQ(Seconds("2026-02-01T07:59:59+0800"), 1769903999);
    EXPECT_EQ(Seconds("2026-02-01T07:59:59+08"), 1769903999);
    EXPECT_EQ(Seconds("2026-01-31T18:29:59-05:30"), 1769903999);
    EXPECT_EQ(Seconds("1970-01-01T00:00:00+00:01"), -60);
}

TEST(IsoTime, LeapYearsFollowTheCalendar)
{
    EXPECT_EQ(Seconds("2024-02-29T00:00:00Z"), 1709164800);
    EXPECT_EQ(Seconds("2000-02-29T00:00:00Z"), 951782400);
    EXPECT_EQ(Seconds("2100-03-01T00:00:00Z"), 4107542400);
    EXPECT_EQ(Seconds("2100-02-29T00:00:00Z"), 0);
    EXPECT_EQ(Seconds("2025-02-29T00:00:00Z"), 0);
    EXPECT_EQ(Seconds("9999-12-31T23:59:59Z"), 253402300799);
}

TEST(IsoTime, SecondsAndTheTimeOfDayMayBeLeftOut)
{
    EXPECT_EQ(Seconds("2026-01-31T23:59Z"), 1769903940);
    EXPECT_EQ(Seconds("2026-01-31"), Local(2026, 1, 31, 0, 0, 0));
}

TEST(IsoTime, OtherWritingsOfTheSameAreRead)
{
    EXPECT_EQ(Seconds("20260131T235959Z"), 1769903999);
    EXPECT_EQ(Seconds("2026-01-31 23:59:59Z"), 1769903999);
    EXPECT_EQ(Seconds("2026-01-31t23:59:59Z"), 1769903999);
    EXPECT_EQ(Seconds("2026-01-31T24:00:00Z"), 1769904000);
    EXPECT_EQ(Seconds("2026-01-31T23:59:60Z"), 1769904000);
}

TEST(IsoTime, WithoutAnOffsetItIsLocalTime)
{
    EXPECT_EQ(Seconds("2026-07-15T12:30:45"), Local(2026, 7, 15, 12, 30, 45));
    EXPECT_EQ(Seconds("2026-01-15T12:30:45"), Local(2026, 1, 15, 12, 30, 45));
}

TEST(IsoTime, WhatIsNoTimeIsZero)
{
    for (const char* text : {"",
                             " ",
                             "now",
                             "2026",
                             "2026-01",
                             "2026-13-01T00:00:00Z",
                             "2026-00-01T00:00:00Z",
                             "2026-04-31T00:00:00Z",
                             "2026-01-00T00:00:00Z",
                             "2026-01-31T24:00:01Z",
                             "2026-01-31T25:00:00Z",
                             "2026-01-31T23:60:00Z",
                             "2026-01-31T23:59:61Z",
                             "2026-01-31T23:59:59Zx",
                             "2026-01-31T23:59:59.Z",
                             "2026-01-31T23:59:59+",
                             "2026-01-31T23:59:59+24:00",
                             "2026-01-31T23:59:59+08:60",
                             "2026-01-31T",
                             "2026-01-31T23Z",
                             "2026-0131T00:00:00Z",
                             "2026-01-31T23:5959Z",
                             "2026-01-31X00:00:00Z",
                             "0000-01-01T00:00:00Z",
                             " 2026-01-31T23:59:59Z",
                             "-2026-01-31T23:59:59Z",
                             "1769903999"})
        EXPECT_EQ(Seconds(text), 0) << text;
}

}  // namespace
