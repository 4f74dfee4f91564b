#include "ZellNetLink/XmlProto.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using ZellNetLink::CXmlProto;
using ZellNetLink::XmlNode;

std::shared_ptr<XmlNode> Node(const std::string& name, const std::string& value = {})
{
    return std::make_shared<XmlNode>(name, value);
}

bool IsXml(const std::string& text)
{
    CXmlProto xml;
    return xml.set_str(text);
}

std::string ThroughXml(const std::string& text)
{
    const auto root = Node("Root");
    root->AddSub(Node("Text", text));
    CXmlProto xml;
    return xml.set_str(root->ToString(true)) ? xml.get_v("/Root/Text", "absent") : "refused";
}

std::string Nested(int depth)
{
    std::string text;
    for (int i = 0; i < depth; ++i)
        text += "<a>";
    for (int i = 0; i < depth; ++i)
        text += "</a>";
    return text;
}

TEST(XmlWrite, ADocumentHasItsDeclarationAndItsChildrenInOrder)
{
    const auto root = Node("FileExportParams");
    root->AddSub(Node("TaskParamType", "1"));
    const auto list = Node("List");
    list->AddSub(Node("One", "a"));
    list->AddSub(Node("One"));
    list->AddSub(nullptr);
    root->AddSub(list);
    EXPECT_EQ(root->ToString(true), R"(<?xml version="1.0" encoding="UTF-8"?><FileExportParams>)"
                                    "<TaskParamType>1</TaskParamType><List><One>a</One><One/></List>"
                                    "</FileExportParams>");
    EXPECT_EQ(list->ToString(false), "<List><One>a</One><One/></List>");
}

TEST(XmlWrite, AValueStandsInFrontOfTheChildren)
{
    const auto root = Node("R", "value");
    root->AddSub(Node("C"));
    EXPECT_EQ(root->ToString(false), "<R>value<C/></R>");
}

TEST(XmlWrite, TextsSurviveLetterForLetter)
{
    for (const char* text : {"plain", "<a> & \"b\" 'c' ]]>", "line\nfeed", "carriage\r\nreturn\r", "\t", " ",
                             " \r\n\t ", "", "&amp;", "\xE4\xBD\xA0\xE5\xA5\xBD \xF0\x9F\x98\x80 \xD8\xB3",
                             "{\"PageIndex\":1}", "&#13;", "<!-- x -->"})
        EXPECT_EQ(ThroughXml(text), text);
}

TEST(XmlWrite, WhatXmlCannotHoldIsReplaced)
{
    EXPECT_EQ(ThroughXml(std::string("a\0b\x01\x1F\x7F", 6)),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD\xEF\xBF\xBD\x7F");
    EXPECT_EQ(ThroughXml("\xFF\xE4\xBD"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(ThroughXml("\xEF\xBF\xBE"), "\xEF\xBF\xBD");
    EXPECT_EQ(ThroughXml("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(XmlWrite, ElementsNestedTooDeepGiveNoText)
{
    auto root = Node("a");
    for (int i = 1; i < 512; ++i) {
        auto outer = Node("a");
        outer->AddSub(root);
        root = outer;
    }
    EXPECT_TRUE(IsXml(root->ToString(true)));
    auto outer = Node("a");
    outer->AddSub(root);
    EXPECT_EQ(outer->ToString(true), "");
}

TEST(XmlWrite, ATreeOfAnyDepthComesDownWithoutStack)
{
    auto root = Node("a");
    const auto kept = root;
    for (int i = 0; i < 1000000; ++i) {
        auto outer = Node("a");
        outer->AddSub(std::move(root));
        root = std::move(outer);
    }
    kept->AddSub(Node("b", "c"));
    root.reset();
    EXPECT_EQ(kept->ToString(false), "<a><b>c</b></a>");
}

TEST(XmlWrite, AChildOfTwoParentsStandsInBoth)
{
    const auto child = Node("c", "x");
    const auto first = Node("a");
    first->AddSub(child);
    {
        XmlNode second("b", "");
        second.AddSub(child);
        EXPECT_EQ(second.ToString(false), "<b><c>x</c></b>");
    }
    EXPECT_EQ(first->ToString(false), "<a><c>x</c></a>");
}

class XmlRead : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(xml_.set_str(R"(<?xml version="1.0"?>
<!-- a comment -->
<Root attribute="ignored">
  <Name>gate</Name><Number> 42 </Number><Unsigned>4294967295</Unsigned><Negative>-7</Negative><Real>1.5</Real>
  <List><One><Id>1</Id></One><Other/><One><Id>2</Id></One></List>
  <Mixed>a<!-- c -->b<i>inner</i><![CDATA[<c>]]></Mixed>
  <Empty/>
</Root>)"));
    }

    CXmlProto xml_;
};

TEST_F(XmlRead, TextsAndIntegersAreReadByPath)
{
    EXPECT_EQ(xml_.get_v("/Root/Name", "-"), "gate");
    EXPECT_EQ(xml_.get_v("Root/Name/", "-"), "gate");
    EXPECT_EQ(xml_.get_v("Root[1]/Name[1]", "-"), "gate");
    EXPECT_EQ(xml_.get_int_v("/Root/Number", -1), 42);
    EXPECT_EQ(xml_.get_int_v("/Root/Unsigned", 5), -1);
    EXPECT_EQ(xml_.get_int_v("/Root/Negative", 5), -7);
    EXPECT_EQ(xml_.get_v("/Root/Mixed", "-"), "ab<c>");
    EXPECT_EQ(xml_.get_v("/Root/Empty", "-"), "");
}

TEST_F(XmlRead, WhatIsNotThereGivesTheFallback)
{
    EXPECT_EQ(xml_.get_v("/Root/None", "-"), "-");
    EXPECT_EQ(xml_.get_v("/Other/Name", "-"), "-");
    EXPECT_EQ(xml_.get_v("", "-"), "-");
    EXPECT_EQ(xml_.get_v("/Root/Name[2]", "-"), "-");
    EXPECT_EQ(xml_.get_v("/Root/Name[0]", "-"), "-");
    EXPECT_EQ(xml_.get_v("/[1]/Name", "-"), "-");
    EXPECT_EQ(xml_.get_int_v("/Root/None", 5), 5);
    EXPECT_EQ(xml_.get_int_v("/Root/Name", 5), 5);
    EXPECT_EQ(xml_.get_int_v("/Root/Real", 5), 5);
    EXPECT_EQ(xml_.get_int_v("/Root/Empty", 5), 5);
    EXPECT_EQ(xml_.get_cnt("/Root/None/One"), 0);
    EXPECT_EQ(xml_.get_cnt(""), 0);
}

TEST_F(XmlRead, ElementsOfANameAreCountedAndReached)
{
    EXPECT_EQ(xml_.get_cnt("/Root/List/One"), 2);
    EXPECT_EQ(xml_.get_cnt("/Root/List/Other"), 1);
    EXPECT_EQ(xml_.get_cnt("/Root/List/One[2]"), 1);
    EXPECT_EQ(xml_.get_cnt("/Root/List/One[3]"), 0);
    EXPECT_EQ(xml_.get_cnt("/Root"), 1);
    EXPECT_EQ(xml_.get_int_v("/Root/List/One[1]/Id", -1), 1);
    EXPECT_EQ(xml_.get_int_v("/Root/List/One[2]/Id", -1), 2);
    EXPECT_EQ(xml_.get_int_v("/Root/List/One/Id", -1), 1);
}

TEST_F(XmlRead, AFailedParseLeavesNothing)
{
    EXPECT_EQ(xml_.get_cnt("/Root/List/One"), 2);
    EXPECT_FALSE(xml_.set_str("no xml"));
    EXPECT_EQ(xml_.get_v("/Root/Name", "-"), "-");
    EXPECT_EQ(xml_.get_cnt("/Root/List/One"), 0);
    ASSERT_TRUE(xml_.set_str("<Root><List><One/></List></Root>"));
    EXPECT_EQ(xml_.get_cnt("/Root/List/One"), 1);
}

TEST(XmlParse, WhatIsNoXmlIsRefused)
{
    for (const char* text : {"", " ", "text", "<a>", "<a></b>", "<a/><b/>", "text<a/>", "<a/>text", "<a",
                             "<a b=></a>", "<!-- only -->", "{}", "<![CDATA[x]]><a/>"})
        EXPECT_FALSE(IsXml(text)) << text;
    EXPECT_FALSE(IsXml(std::string("<a/>\0", 5)));
    EXPECT_FALSE(IsXml("<a>\xFF</a>"));
}

TEST(XmlParse, AByteOrderMarkAndBlanksAroundTheRootAreFine)
{
    EXPECT_TRUE(IsXml("\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<a/>\n<!-- end -->\n"));
}

TEST(XmlParse, ExternalEntitiesAreNotFetched)
{
    CXmlProto xml;
    ASSERT_TRUE(
        xml.set_str("<!DOCTYPE a [<!ENTITY f SYSTEM \"file:///etc/passwd\">"
                    "<!ENTITY b \"bbbbbbbbbb\">]><a>&f;&b;&lt;&#65;&#x42;</a>"));
    EXPECT_EQ(xml.get_v("/a", "-"), "&f;&b;<AB");
}

TEST(XmlParse, AReferenceToNoLetterIsRepaired)
{
    CXmlProto xml;
    ASSERT_TRUE(xml.set_str("<a>x&#xD800;y</a>"));
    EXPECT_EQ(xml.get_v("/a", "-"), "x\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDy");
}

TEST(XmlParse, AReferenceToTheNumberZeroEndsItsText)
{
    CXmlProto xml;
    ASSERT_TRUE(xml.set_str("<a><b>x&#0;y</b><c>z</c></a>"));
    EXPECT_EQ(xml.get_v("/a/b", "-"), "x");
    EXPECT_EQ(xml.get_v("/a/c", "-"), "z");
}

TEST(XmlParse, LineEndsAreLineFeedsAndReferencesCarriageReturns)
{
    CXmlProto xml;
    ASSERT_TRUE(xml.set_str("<a>1\r\n2\r3\n4&#13;5&#xD;&#10;</a>"));
    EXPECT_EQ(xml.get_v("/a", "-"), "1\n2\n3\n4\r5\r\n");
}

TEST(XmlParse, NumbersBeyondThirtyTwoBitsGiveTheLowOnes)
{
    CXmlProto xml;
    ASSERT_TRUE(
        xml.set_str("<a><n>4294967296</n><n>-4294967297</n><n>2147483648</n><n>+12</n><n>\n 9 \t</n>"
                    "<n>1 2</n><n>-</n><n>0x10</n><n>123456789012345678901234567890</n></a>"));
    EXPECT_EQ(xml.get_int_v("/a/n[1]", 5), 0);
    EXPECT_EQ(xml.get_int_v("/a/n[2]", 5), -1);
    EXPECT_EQ(xml.get_int_v("/a/n[3]", 5), -2147483647 - 1);
    EXPECT_EQ(xml.get_int_v("/a/n[4]", 5), 12);
    EXPECT_EQ(xml.get_int_v("/a/n[5]", 5), 9);
    EXPECT_EQ(xml.get_int_v("/a/n[6]", 5), 5);
    EXPECT_EQ(xml.get_int_v("/a/n[7]", 5), 5);
    EXPECT_EQ(xml.get_int_v("/a/n[8]", 5), 5);
    EXPECT_EQ(xml.get_int_v("/a/n[9]", 5), 1312754386);
}

TEST(XmlParse, PrefixesBelongToNamesAndNamesKeepTheirCase)
{
    CXmlProto xml;
    ASSERT_TRUE(xml.set_str(R"(<x:a xmlns:x="u"><x:b>1</x:b><b>2</b><B>3</B></x:a>)"));
    EXPECT_EQ(xml.get_int_v("/x:a/x:b", -1), 1);
    EXPECT_EQ(xml.get_int_v("/x:a/b", -1), 2);
    EXPECT_EQ(xml.get_int_v("/x:a/B", -1), 3);
    EXPECT_EQ(xml.get_cnt("/a"), 0);
    EXPECT_EQ(xml.get_cnt("/x:a/b"), 1);
}

TEST(XmlParse, AMillionSiblingsAndAFoldedDocumentTypeAreNoTrouble)
{
    std::string wide = "<a>";
    for (int i = 0; i < 1000000; ++i)
        wide += "<b/>";
    CXmlProto xml;
    ASSERT_TRUE(xml.set_str(wide + "</a>"));
    EXPECT_EQ(xml.get_cnt("/a/b"), 1000000);
    EXPECT_FALSE(IsXml("<!DOCTYPE a " + std::string(1000000, '[')));
    EXPECT_FALSE(IsXml("<!DOCTYPE a [" + std::string(1000000, '<')));
}

TEST(XmlParse, NestingHasALimitAndNoStackOverflow)
{
    EXPECT_TRUE(IsXml(Nested(512)));
    EXPECT_FALSE(IsXml(Nested(513)));
    EXPECT_FALSE(IsXml(Nested(1000000)));
}

TEST(XmlParse, ALongListIsReadInTime)
{
    constexpr int kEntries = 50000;
    std::string text = "<Root><List>";
    for (int i = 1; i <= kEntries; ++i)
        text += "<One><Id>" + std::to_string(i) + "</Id></One>";
    CXmlProto xml;
    ASSERT_TRUE(xml.set_str(text + "</List></Root>"));
    ASSERT_EQ(xml.get_cnt("/Root/List/One"), kEntries);
    for (int i = 1; i <= kEntries; ++i)
        ASSERT_EQ(xml.get_int_v("/Root/List/One[" + std::to_string(i) + "]/Id", -1), i);
}

}  // namespace
