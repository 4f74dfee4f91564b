#include "ZellNetLink/RapidJsonProto.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using ZellNetLink::CRapidJsonProto;

std::string Nested(int depth)
{
    return std::string(static_cast<std::size_t>(depth), '[') +
           std::string(static_cast<std::size_t>(depth), ']');
}

// The text that comes back of one that goes in, "refused" if it does not go in.
std::string RoundTrip(const std::string& text)
{
    CRapidJsonProto json;
    return json.set_str(text) ? json.get_str(0) : "refused";
}

class JsonRead : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(json_.set_str(R"({
            "Name": "front gate", "Empty": "", "Number": 7, "Real": 2.75, "Yes": true, "No": false, "Nothing": null,
            "List": [ {"Id": 1}, {"Id": 2, "Rows": [[10, 11], [20, 21]]} ],
            "Lines": { "ContentLine": [ {"Content": "a"}, {"Content": "b"} ] },
            "ByNumber": { "0": "zero", "1": "one" },
            "Odd[x]": "brackets" })"));
    }

    CRapidJsonProto json_;
};

TEST_F(JsonRead, PathsStandWithAndWithoutLeadingAndFinalSlash)
{
    EXPECT_EQ(json_.get_v("/Name", "-"), "front gate");
    EXPECT_EQ(json_.get_v("Name", "-"), "front gate");
    EXPECT_EQ(json_.get_v("//Name/", "-"), "front gate");
    EXPECT_EQ(json_.get_v("/Lines/ContentLine[1]/Content", "-"), "a");
}

TEST_F(JsonRead, BracketsCountFromOne)
{
    EXPECT_EQ(json_.get_int_v("/List[1]/Id", -1), 1);
    EXPECT_EQ(json_.get_int_v("/List[2]/Id", -1), 2);
    EXPECT_EQ(json_.get_int_v("/List[0]/Id", -1), -1);
    EXPECT_EQ(json_.get_int_v("/List[3]/Id", -1), -1);
    EXPECT_EQ(json_.get_int_v("/List[99999999999999999999]/Id", -1), -1);
    EXPECT_EQ(json_.get_int_v("/List[2]/Rows[2][1]", -1), 20);
}

TEST_F(JsonRead, ABareNumberCountsFromZeroOnAList)
{
    EXPECT_EQ(json_.get_v("Lines/ContentLine/0/Content", "-"), "a");
    EXPECT_EQ(json_.get_v("Lines/ContentLine/1/Content", "-"), "b");
    EXPECT_EQ(json_.get_v("Lines/ContentLine/2/Content", "-"), "-");
}

TEST_F(JsonRead, ABareNumberIsANameInAnObject)
{
    EXPECT_EQ(json_.get_v("ByNumber/1", "-"), "one");
    EXPECT_EQ(json_.get_v("ByNumber[1]", "-"), "-");
}

TEST_F(JsonRead, BracketsWithoutANumberBelongToTheName)
{
    EXPECT_EQ(json_.get_v("Odd[x]", "-"), "brackets");
}

TEST_F(JsonRead, WhatIsNotThereGivesTheFallback)
{
    EXPECT_EQ(json_.get_v("/None/Of/It", "fallback"), "fallback");
    EXPECT_EQ(json_.get_int_v("/None", 42), 42);
    EXPECT_TRUE(json_.get_bool_v("/None", true));
    EXPECT_FLOAT_EQ(json_.get_float_v("/None", 1.5F), 1.5F);
    EXPECT_EQ(json_.get_cnt("/None"), 0);
    EXPECT_EQ(json_.get_node_str("/None", 0), "");
    EXPECT_EQ(json_.get_node("/None"), nullptr);
}

TEST_F(JsonRead, AWrongKindGivesTheFallback)
{
    EXPECT_EQ(json_.get_v("/Number", "-"), "-");
    EXPECT_EQ(json_.get_v("/Nothing", "-"), "-");
    EXPECT_EQ(json_.get_v("/List", "-"), "-");
    EXPECT_EQ(json_.get_int_v("/Yes", -1), -1);
    EXPECT_EQ(json_.get_int_v("/Name", -1), -1);
    EXPECT_FALSE(json_.get_bool_v("/Number", false));
    EXPECT_TRUE(json_.get_bool_v("/Nothing", true));
    EXPECT_FLOAT_EQ(json_.get_float_v("/Name", -1.0F), -1.0F);
}

TEST_F(JsonRead, ValuesOfTheirKindAreRead)
{
    EXPECT_EQ(json_.get_v("/Empty", "-"), "");
    EXPECT_EQ(json_.get_int_v("/Number", -1), 7);
    EXPECT_FLOAT_EQ(json_.get_float_v("/Number", -1), 7.0F);
    EXPECT_FLOAT_EQ(json_.get_float_v("/Real", -1), 2.75F);
    EXPECT_TRUE(json_.get_bool_v("/Yes", false));
    EXPECT_FALSE(json_.get_bool_v("/No", true));
}

TEST_F(JsonRead, OnlyListsHaveACount)
{
    EXPECT_EQ(json_.get_cnt("/List"), 2);
    EXPECT_EQ(json_.get_cnt("/List[2]/Rows[1]"), 2);
    EXPECT_EQ(json_.get_cnt("/Lines"), 0);
    EXPECT_EQ(json_.get_cnt("/Name"), 0);
    EXPECT_EQ(json_.get_cnt("/List[3]"), 0);
    EXPECT_EQ(json_.get_cnt(""), 0);
}

TEST_F(JsonRead, TheEmptyPathIsTheRoot)
{
    EXPECT_EQ(json_.get_node_str("", 0), json_.get_str(0));
    EXPECT_EQ(json_.get_node_str("/", 0), json_.get_str(0));
    EXPECT_EQ(json_.get_node(""), json_.get_node("//"));
    ASSERT_TRUE(json_.set_str("[7]"));
    EXPECT_EQ(json_.get_cnt(""), 1);
    EXPECT_EQ(json_.get_int_v("[1]", -1), 7);
    EXPECT_EQ(json_.get_int_v("0", -1), 7);
}

TEST_F(JsonRead, ANodeComesBackAsItsText)
{
    EXPECT_EQ(json_.get_node_str("/List[1]", 0), R"({"Id":1})");
    EXPECT_EQ(json_.get_node_str("/Name", 0), R"("front gate")");
    EXPECT_EQ(json_.get_node_str("/Nothing", 0), "null");
    EXPECT_EQ(json_.get_node_str("/Number", 0), "7");
}

TEST(JsonNumbers, BeyondThirtyTwoBitsTheLowOnesCount)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str(R"([4294967295, 4294967296, -2147483649, 18446744073709551617,
                                 123456789012345678901234567890, 2147483648])"));
    EXPECT_EQ(json.get_int_v("[1]", 5), -1);
    EXPECT_EQ(json.get_int_v("[2]", 5), 0);
    EXPECT_EQ(json.get_int_v("[3]", 5), 2147483647);
    EXPECT_EQ(json.get_int_v("[4]", 5), 1);
    EXPECT_EQ(json.get_int_v("[5]", 5), 1312754386);
    EXPECT_EQ(json.get_int_v("[6]", 5), -2147483647 - 1);
}

TEST(JsonNumbers, AFractionIsCutOffAndAHugeOneHasNoInteger)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str("[1.0, -2.9, 1e3, 1e300, 9.3e18, 4294967295.0]"));
    EXPECT_EQ(json.get_int_v("[1]", 5), 1);
    EXPECT_EQ(json.get_int_v("[2]", 5), -2);
    EXPECT_EQ(json.get_int_v("[3]", 5), 1000);
    EXPECT_EQ(json.get_int_v("[4]", 5), 5);
    EXPECT_EQ(json.get_int_v("[5]", 5), 5);
    EXPECT_EQ(json.get_int_v("[6]", 5), -1);
    EXPECT_FLOAT_EQ(json.get_float_v("[4]", 5), 5);
}

TEST(JsonNumbers, WhatIsTooSmallToTellFromZeroIsZero)
{
    CRapidJsonProto json;
    ASSERT_TRUE(
        json.set_str("[1e-400, -1E-99999999999999999999, 1e-60, 0.0001e-322, 1e-9223372036854775808, " +
                     std::string("0.") + std::string(400, '0') + "1]"));
    for (int i = 1; i <= json.get_cnt(""); ++i) {
        const std::string entry = "[" + std::to_string(i) + "]";
        EXPECT_EQ(json.get_int_v(entry, 5), 0) << i;
        EXPECT_FLOAT_EQ(json.get_float_v(entry, 5), 0) << i;
    }
}

TEST(JsonNumbers, WhatIsTooLargeForAFloatHasNone)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str("[9e308, " + std::string(300, '9') + "e+5, 3.5e38, -3.5e38, 3.4e38]"));
    EXPECT_FLOAT_EQ(json.get_float_v("[1]", 5), 5);
    EXPECT_EQ(json.get_int_v("[1]", 5), 5);
    EXPECT_FLOAT_EQ(json.get_float_v("[2]", 5), 5);
    EXPECT_FLOAT_EQ(json.get_float_v("[3]", 5), 5);
    EXPECT_FLOAT_EQ(json.get_float_v("[4]", 5), 5);
    EXPECT_FLOAT_EQ(json.get_float_v("[5]", 5), 3.4e38F);
}

TEST(JsonText, KeepsTheOrderOfMembersAndTheFormOfNumbers)
{
    EXPECT_EQ(RoundTrip(R"({ "b" : 1.0, "a" : 1e3, "PageIndex" : 12345678901234567890123, "c": -0.50E+2 })"),
              R"({"b":1.0,"a":1e3,"PageIndex":12345678901234567890123,"c":-0.50E+2})");
}

TEST(JsonText, KeepsEscapesAndLettersOfAllScripts)
{
    EXPECT_EQ(RoundTrip("\"\\u00e9\\ud83d\\ude00 \\/ \\\" \\\\ \\n\\t\\u0001\""),
              "\"\xC3\xA9\xF0\x9F\x98\x80 / \\\" \\\\ \\n\\t\\u0001\"");
}

TEST(JsonText, AZeroLetterSurvives)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str(R"({"a":"x\u0000y"})"));
    EXPECT_EQ(json.get_v("a", ""), std::string("x\0y", 3));
    EXPECT_EQ(json.get_str(0), R"({"a":"x\u0000y"})");
}

TEST(JsonText, OfDuplicateMembersTheLastCountsInTheFirstPlace)
{
    EXPECT_EQ(RoundTrip(R"({"a":1,"b":2,"a":{"x":3},"b":[4],"b":"last"})"), R"({"a":{"x":3},"b":"last"})");
}

TEST(JsonText, AnyKindOfValueMayBeTheRoot)
{
    EXPECT_EQ(RoundTrip(" 5 "), "5");
    EXPECT_EQ(RoundTrip("\"x\""), "\"x\"");
    EXPECT_EQ(RoundTrip("null"), "null");
    EXPECT_EQ(RoundTrip("[]"), "[]");
    EXPECT_EQ(RoundTrip("\xEF\xBB\xBF{}"), "{}");
}

TEST(JsonText, WhatIsNoJsonIsRefused)
{
    for (const char* text : {"", " ", "{", "}", "{\"a\":}", "{\"a\":1,}", "[1,]", "{'a':1}", "nul", "01",
                             "+1", ".5", "1e999", "{} {}", "{}x", "\"\t\"", "<a/>", "\"open", "// c\n1"})
        EXPECT_EQ(RoundTrip(text), "refused") << text;
    EXPECT_EQ(RoundTrip(std::string("{}\0", 3)), "refused");
    EXPECT_EQ(RoundTrip(std::string("{}\0garbage", 10)), "refused");
}

TEST(JsonText, WhatIsNoUtf8IsRefused)
{
    for (const char* text : {"\"\xFF\"", "\"\xC3\"", "\"\xC0\xAF\"", "\"\xED\xA0\x80\"", "{\"\xFF\":1}",
                             "\"\\ud800\"", "\"\\udc00\"", "\"\\ud800x\"", "{\"\\udc00\":1}"})
        EXPECT_EQ(RoundTrip(text), "refused") << text;
}

TEST(JsonText, NestingHasALimitAndNoStackOverflow)
{
    EXPECT_EQ(RoundTrip(Nested(512)), Nested(512));
    EXPECT_EQ(RoundTrip(Nested(513)), "refused");
    EXPECT_EQ(RoundTrip(std::string(10000000, '[')), "refused");
    std::string objects;
    for (int i = 0; i < 1000000; ++i)
        objects += "{\"a\":";
    EXPECT_EQ(RoundTrip(objects), "refused");
}

TEST(JsonText, ManyMembersOfOneObjectAreReadInTime)
{
    std::string text = "{";
    for (int i = 0; i < 100000; ++i)
        text += "\"" + std::to_string(i) + "\":0,";
    text += "\"0\":1}";
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str(text));
    EXPECT_EQ(json.get_int_v("0", -1), 1);
}

TEST(JsonText, AFailedParseLeavesAnEmptyObjectThatCanBeWritten)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str(R"({"old":1})"));
    EXPECT_FALSE(json.set_str("no json"));
    EXPECT_EQ(json.get_str(0), "{}");
    EXPECT_TRUE(json.set_v("/CheckPasswordRequest/UserName", std::string("kim")));
    EXPECT_EQ(json.get_str(0), R"({"CheckPasswordRequest":{"UserName":"kim"}})");
}

}  // namespace
