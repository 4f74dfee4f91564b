#include "ZellNetLink/RapidJsonProto.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>

namespace {

using ZellNetLink::CRapidJsonProto;
using ZellNetLink::IProto;

std::string S(const char* text)
{
    return text;
}

TEST(JsonWrite, MissingObjectsAndListsAreMade)
{
    CRapidJsonProto json;
    EXPECT_TRUE(json.set_v("/ArrayList[1]/FileName", S("a.jpg")));
    EXPECT_TRUE(json.set_v("/ArrayList[1]/ErrorReason", S("gone")));
    EXPECT_TRUE(json.set_v("/ArrayList[2]/FileName", S("b.jpg")));
    EXPECT_TRUE(json.set_v("Deep/Down/Here", 5));
    EXPECT_EQ(json.get_str(0),
              R"({"ArrayList":[{"FileName":"a.jpg","ErrorReason":"gone"},{"FileName":"b.jpg"}],)"
              R"("Deep":{"Down":{"Here":5}}})");
}

TEST(JsonWrite, AListGrowsWithNullsBetween)
{
    CRapidJsonProto json;
    EXPECT_TRUE(json.set_v("List[3]/Name", S("third")));
    EXPECT_EQ(json.get_str(0), R"({"List":[null,null,{"Name":"third"}]})");
    EXPECT_TRUE(json.set_v("List[1]/Name", S("first")));
    EXPECT_EQ(json.get_str(0), R"({"List":[{"Name":"first"},null,{"Name":"third"}]})");
}

TEST(JsonWrite, AListDoesNotGrowWithoutMeasure)
{
    CRapidJsonProto json;
    EXPECT_TRUE(json.set_v("List[1]", 1));
    EXPECT_FALSE(json.set_v("List[4000000000]", 2));
    EXPECT_FALSE(json.set_v("List/4000000000", 2));
    EXPECT_FALSE(json.set_v("New/Other[4000000000]/Name", 2));
    EXPECT_FALSE(json.set_v("List[0]", 2));
    EXPECT_EQ(json.get_str(0), R"({"List":[1]})");
}

TEST(JsonWrite, TheListsOfOneCallShareTheirMeasure)
{
    CRapidJsonProto json;
    EXPECT_FALSE(json.set_v("L[65537][2]", 1));
    EXPECT_FALSE(json.set_v("L[40000]/x[40000]", 1));
    EXPECT_EQ(json.get_str(0), "{}");
    EXPECT_TRUE(json.set_v("L[40000]/x[1]", 1));
    EXPECT_TRUE(json.set_v("L[40000]/x[40000]", 1));
    EXPECT_EQ(json.get_cnt("L[40000]/x"), 40000);
    EXPECT_TRUE(json.set_v("L[105536]", 1));
    EXPECT_FALSE(json.set_v("L[171074]", 1));
    EXPECT_EQ(json.get_cnt("L"), 105536);
}

TEST(JsonWrite, ABareNumberWritesIntoAListFromZero)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str(R"({"L":["a","b"]})"));
    EXPECT_TRUE(json.set_v("L/1/", S("B")));
    EXPECT_TRUE(json.set_v("L/2", S("c")));
    EXPECT_TRUE(json.set_v("O/0", S("name")));
    EXPECT_EQ(json.get_str(0), R"({"L":["a","B","c"],"O":{"0":"name"}})");
}

TEST(JsonWrite, TheValueAtTheEndIsReplacedWhateverItWas)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str(R"({"a":{"x":1},"b":[1],"c":"s","d":null})"));
    EXPECT_TRUE(json.set_v("a", 1));
    EXPECT_TRUE(json.set_v("b", S("text")));
    EXPECT_TRUE(json.set_bool_v("c", true));
    EXPECT_TRUE(json.set_float_v("d", 0.5F));
    EXPECT_EQ(json.get_str(0), R"({"a":1,"b":"text","c":true,"d":0.5})");
}

TEST(JsonWrite, AWrongKindOnTheWayIsKept)
{
    CRapidJsonProto json;
    const std::string text = R"({"text":"s","list":[1],"object":{"x":1}})";
    ASSERT_TRUE(json.set_str(text));
    EXPECT_FALSE(json.set_v("text/new/x", 1));
    EXPECT_FALSE(json.set_v("list/name", 1));
    EXPECT_FALSE(json.set_v("object[1]", 1));
    EXPECT_FALSE(json.set_v("text[1]", 1));
    EXPECT_FALSE(json.set_v("", 1));
    EXPECT_FALSE(json.set_v("/", 1));
    EXPECT_EQ(json.get_str(0), text);
}

TEST(JsonWrite, NullOnTheWayCountsAsMissing)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str(R"({"a":null,"b":null})"));
    EXPECT_TRUE(json.set_v("a/x", 1));
    EXPECT_TRUE(json.set_v("b[1]", 1));
    EXPECT_EQ(json.get_str(0), R"({"a":{"x":1},"b":[1]})");
    ASSERT_TRUE(json.set_str("null"));
    EXPECT_TRUE(json.set_v("x", 1));
    EXPECT_EQ(json.get_str(0), R"({"x":1})");
}

TEST(JsonWrite, WritingTwiceDoesNotGrow)
{
    CRapidJsonProto json;
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(json.set_v("/CheckPasswordRequest/PasswordType", i));
    EXPECT_EQ(json.get_str(0), R"({"CheckPasswordRequest":{"PasswordType":1}})");
}

TEST(JsonWrite, FloatsHaveTheirShortestForm)
{
    CRapidJsonProto json;
    EXPECT_TRUE(json.set_float_v("a", 0.1F));
    EXPECT_TRUE(json.set_float_v("b", 5.0F));
    EXPECT_TRUE(json.set_float_v("c", 1e20F));
    EXPECT_FALSE(json.set_float_v("d", std::numeric_limits<float>::infinity()));
    EXPECT_FALSE(json.set_float_v("d", std::nanf("")));
    EXPECT_EQ(json.get_str(0), R"({"a":0.1,"b":5,"c":1e+20})");
    EXPECT_FLOAT_EQ(json.get_float_v("c", 0), 1e20F);
}

TEST(JsonWrite, TextsThatAreNotUtf8AreRepaired)
{
    CRapidJsonProto json;
    EXPECT_TRUE(json.set_v("a", S("x\xFFy\xE4\xBD")));
    EXPECT_EQ(json.get_v("a", ""), "x\xEF\xBF\xBDy\xEF\xBF\xBD\xEF\xBF\xBD");
    CRapidJsonProto other;
    EXPECT_TRUE(other.set_str(json.get_str(0)));
}

TEST(JsonWrite, NamesThatAreNotUtf8AreRepaired)
{
    CRapidJsonProto json;
    EXPECT_TRUE(
        json.set_v("\xAF"
                   "a/b",
                   1));
    EXPECT_EQ(json.get_str(0),
              "{\"\xEF\xBF\xBD"
              "a\":{\"b\":1}}");
    EXPECT_EQ(json.get_int_v("\xAF"
                             "a/b",
                             0),
              1);
    EXPECT_TRUE(
        json.add_v("\xAF"
                   "a",
                   "\xFF", 2));
    CRapidJsonProto other;
    EXPECT_TRUE(other.set_str(json.get_str(0)));
}

TEST(JsonWrite, NothingIsMadeBelowTheDepthLimit)
{
    CRapidJsonProto json;
    std::string path;
    for (int i = 0; i < 512; ++i)
        path += "/a";
    EXPECT_FALSE(json.set_v(path + "/a", 1));
    EXPECT_EQ(json.get_str(0), "{}");
    EXPECT_TRUE(json.set_v(path, 1));
    CRapidJsonProto other;
    EXPECT_TRUE(other.set_str(json.get_str(0)));
    ASSERT_NE(json.get_node(path.substr(2)), nullptr);
    EXPECT_FALSE(json.set_v(json.get_node(path.substr(2)), "b/c", 1));
}

TEST(JsonWrite, AnAdditionThatWouldLieTooDeepLeavesNothingBehind)
{
    CRapidJsonProto json;
    std::string path;
    for (int i = 0; i < 511; ++i)
        path += "/a";
    EXPECT_FALSE(json.add_v(path + "/a", "Name", 1));
    EXPECT_FALSE(json.add_list_v(path + "/a", "", 1));
    EXPECT_FALSE(json.add_list_v(path, "List", S("x")));
    EXPECT_EQ(json.get_str(0), "{}");
    EXPECT_TRUE(json.add_v(path, "Name", S("x")));
    EXPECT_TRUE(json.add_list_v(path.substr(2), "List", 1));
    EXPECT_EQ(json.add_list_v(json.get_node(path), "List", 1), nullptr);
    EXPECT_EQ(json.add_v(json.get_node(path + "/Name"), "x", 1), nullptr);
    CRapidJsonProto other;
    EXPECT_TRUE(other.set_str(json.get_str(0)));
}

TEST(JsonNodes, AMemberIsAddedUnderANodeAndGivesItsHandle)
{
    CRapidJsonProto json;
    void* root = json.get_node("");
    ASSERT_NE(root, nullptr);
    void* name = json.add_v(root, "Name", S("x"));
    EXPECT_EQ(name, json.get_node("/Name"));
    EXPECT_NE(json.add_v(root, "a/b[1]", 3), nullptr);
    EXPECT_EQ(json.add_v(root, "Name", 4), nullptr);
    EXPECT_EQ(json.add_v(name, "under a text", 4), nullptr);
    EXPECT_EQ(json.add_v(nullptr, "Name", 4), nullptr);
    EXPECT_EQ(json.get_str(0), R"({"Name":"x","a/b[1]":3})");
}

TEST(JsonNodes, AMemberIsAddedAtAPath)
{
    CRapidJsonProto json;
    EXPECT_TRUE(json.add_v("/Outer/Inner", "Number", 1));
    EXPECT_TRUE(json.add_v("/Outer/Inner", "Text", S("t")));
    EXPECT_FALSE(json.add_v("/Outer/Inner", "Text", S("again")));
    EXPECT_FALSE(json.add_v("/Outer/Inner/Text", "below", 1));
    EXPECT_EQ(json.get_str(0), R"({"Outer":{"Inner":{"Number":1,"Text":"t"}}})");
}

TEST(JsonNodes, EntriesAreAddedToAList)
{
    CRapidJsonProto json;
    void* root = json.get_node("/");
    EXPECT_NE(json.add_list_v(root, "Ids", 1), nullptr);
    EXPECT_NE(json.add_list_v(root, "Ids", S("two")), nullptr);
    EXPECT_TRUE(json.add_list_v("/Deep", "Ids", 3));
    EXPECT_TRUE(json.add_list_v("/Deep/Ids", "", S("four")));
    EXPECT_FALSE(json.add_list_v("/Deep/Ids", "name", 5));
    EXPECT_FALSE(json.add_list_v("/Deep/Ids[1]", "", 5));
    EXPECT_EQ(json.get_str(0), R"({"Ids":[1,"two"],"Deep":{"Ids":[3,"four"]}})");
    EXPECT_EQ(json.get_cnt("Ids"), 2);
}

TEST(JsonNodes, ValuesAreSetUnderANode)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str(R"({"a":[{"x":1}]})"));
    void* entry = json.get_node("/a[1]");
    EXPECT_TRUE(json.set_v(entry, "x", 2));
    EXPECT_TRUE(json.set_v(entry, "y/z", S("t")));
    EXPECT_FALSE(json.set_v(entry, "", 3));
    EXPECT_FALSE(json.set_v(json.get_node("/a[1]/x"), "below", S("a number")));
    EXPECT_FALSE(json.set_v(static_cast<void*>(nullptr), "x", 3));
    EXPECT_EQ(json.get_str(0), R"({"a":[{"x":2,"y":{"z":"t"}}]})");
}

TEST(JsonNodes, AHandleOutlivesAdditions)
{
    CRapidJsonProto json;
    void* first = json.add_list_v(json.get_node(""), "L", 1);
    for (int i = 0; i < 1000; ++i)
        json.add_list_v("", "L", i);
    EXPECT_EQ(first, json.get_node("L[1]"));
}

TEST(JsonNodes, NullTakesMembersAndEntries)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str(R"({"a":null,"b":null,"c":{"d":null}})"));
    EXPECT_TRUE(json.add_v("a", "x", 1));
    EXPECT_TRUE(json.add_list_v("b", "", 2));
    EXPECT_NE(json.add_list_v(json.get_node("c"), "d", S("e")), nullptr);
    EXPECT_EQ(json.add_list_v(static_cast<void*>(nullptr), "d", 1), nullptr);
    EXPECT_EQ(json.get_str(0), R"({"a":{"x":1},"b":[2],"c":{"d":["e"]}})");
}

TEST(JsonNodes, ANewEntryIsGivenByItsHandle)
{
    CRapidJsonProto json;
    void* number = json.add_list_v(json.get_node(""), "L", 1);
    void* text = json.add_list_v(json.get_node("L"), "", S("two"));
    EXPECT_EQ(number, json.get_node("L[1]"));
    EXPECT_EQ(text, json.get_node("L[2]"));
    EXPECT_EQ(json.add_list_v(json.get_node("L[1]"), "", 3), nullptr);
    EXPECT_EQ(json.get_str(0), R"({"L":[1,"two"]})");
}

TEST(JsonNodes, AClearedObjectIsEmptyWhateverItsRootWas)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str("[1,2]"));
    EXPECT_TRUE(json.clear());
    EXPECT_EQ(json.get_str(0), "{}");
    EXPECT_TRUE(json.set_v("a", 1));
    EXPECT_EQ(json.get_int_v("a", 0), 1);
}

TEST(JsonNodes, ACopyIsItsOwnObject)
{
    CRapidJsonProto json;
    ASSERT_TRUE(json.set_str(R"({"a":[1,{"b":true}],"c":1.50})"));
    const std::unique_ptr<IProto> copy(json.copy(0));
    EXPECT_TRUE(json.clear());
    EXPECT_EQ(json.get_str(0), "{}");
    EXPECT_EQ(copy->get_str(0), R"({"a":[1,{"b":true}],"c":1.50})");
}

}  // namespace
