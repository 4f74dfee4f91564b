#include "tests/unit/ZellBase/Pattern.h"
#include "ZellBase/Util.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <ctime>
#include <limits>
#include <string>

using Zell::Base::StringUtil::str_fmt;
using Zell::Base::StringUtil::StringReplace;
using Zell::Base::TimeUtil::TimeT2StrShortDatetime;

TEST(StrFmt, FormatsATextOfAnyLength)
{
    EXPECT_EQ(str_fmt("%s-%d-%05.1f", "a", 7, 2.5), "a-7-002.5");
    EXPECT_EQ(str_fmt("%s", ""), "");
    const std::string longer(100000, 'x');
    EXPECT_EQ(str_fmt("\"%s\"", longer.c_str()), "\"" + longer + "\"");
}

TEST(StringReplace, ReplacesEachOccurrenceFromLeftToRight)
{
    EXPECT_EQ(StringReplace("C:\\a\\b\\", "\\", "/"), "C:/a/b/");
    EXPECT_EQ(StringReplace("aaa", "aa", "b"), "ba");
    EXPECT_EQ(StringReplace("a", "a", "aa"), "aa");
    EXPECT_EQ(StringReplace("abcabc", "bc", ""), "aa");
    EXPECT_EQ(StringReplace("", "a", "b"), "");
}

TEST(StringReplace, LeavesTheTextWhenThereIsNothingToLookFor)
{
    EXPECT_EQ(StringReplace("abc", "", "x"), "abc");
    EXPECT_EQ(StringReplace("abc", "d", "x"), "abc");
}

TEST(ShortDatetime, IsTheLocalTimeWithoutSeparators)
{
    std::tm date = {};
    date.tm_year = 126;
    date.tm_mon = 0;
    date.tm_mday = 31;
    date.tm_hour = 23;
    date.tm_min = 5;
    date.tm_sec = 9;
    date.tm_isdst = -1;
    EXPECT_EQ(TimeT2StrShortDatetime(std::mktime(&date)), "20260131_230509");
}

TEST(ShortDatetime, BeyondTheCalendarStillNamesAFolder)
{
    const std::string name = TimeT2StrShortDatetime(std::numeric_limits<std::int64_t>::max());
    EXPECT_THAT(name, FitsPattern("[0-9]+"));
}

TEST(CodePages, LeaveUtf8AloneWhereItIsTheCodePage)
{
    const std::string text = "gr\xC3\xBC\xC3\x9F \xE6\x8A\xA5";
    EXPECT_TRUE(Zell::Base::IsUtf8(text));
    EXPECT_FALSE(Zell::Base::IsUtf8("gr\xFC\xDF"));
    EXPECT_EQ(Zell::Base::LocalToUTF8(Zell::Base::UTF8ToLocal("plain")), "plain");
}
