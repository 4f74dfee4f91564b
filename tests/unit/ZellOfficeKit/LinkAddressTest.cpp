#include "LinkAddress.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using ZellOfficeKit::MakeLinkAddress;

namespace {

TEST(LinkAddress, PathOfAFileBecomesAFileAddress)
{
    EXPECT_EQ(MakeLinkAddress("/home/u/report/3_1.jpg"), "file:///home/u/report/3_1.jpg");
}

TEST(LinkAddress, SpacesHashesAndPercentSignsOfAPathAreEncoded)
{
    EXPECT_EQ(MakeLinkAddress("/a b/#1 50%20?.jpg"), "file:///a%20b/%231%2050%2520%3F.jpg");
}

TEST(LinkAddress, OtherScriptsOfAPathAreEncoded)
{
    EXPECT_EQ(MakeLinkAddress("/\xC3\xA9.jpg"), "file:///%C3%A9.jpg");
}

TEST(LinkAddress, InvalidUtf8IsReplacedBeforeItIsEncoded)
{
    EXPECT_EQ(MakeLinkAddress("/\xFF.jpg"), "file:///%EF%BF%BD.jpg");
}

TEST(LinkAddress, PathWithADriveKeepsItsColon)
{
    EXPECT_EQ(MakeLinkAddress("C:\\out\\a b.jpg"), "file:///C:/out/a%20b.jpg");
    EXPECT_EQ(MakeLinkAddress("d:/out/a.jpg"), "file:///d:/out/a.jpg");
}

TEST(LinkAddress, NetworkShareBecomesAFileAddressWithAHost)
{
    EXPECT_EQ(MakeLinkAddress("\\\\server\\share\\a#b.jpg"), "file://server/share/a%23b.jpg");
}

TEST(LinkAddress, RelativePathIsTakenFromTheCurrentFolder)
{
    EXPECT_EQ(MakeLinkAddress("out/a.jpg"),
              MakeLinkAddress(std::filesystem::current_path().u8string() + "/out/a.jpg"));
}

TEST(LinkAddress, WebAddressStaysWithItsQueryAndFragment)
{
    EXPECT_EQ(MakeLinkAddress("https://host:8443/a/b?c=d&e=f#g"), "https://host:8443/a/b?c=d&e=f#g");
}

TEST(LinkAddress, WhatIsEncodedInAWebAddressIsNotEncodedTwice)
{
    EXPECT_EQ(MakeLinkAddress("http://h/a%20b 100%.png"), "http://h/a%20b%20100%25.png");
}

TEST(LinkAddress, QuotesAndAngleBracketsOfAWebAddressAreEncoded)
{
    EXPECT_EQ(MakeLinkAddress("http://h/\"<x>\""), "http://h/%22%3Cx%3E%22");
}

TEST(LinkAddress, NameThatBeginsWithWwwIsAWebAddress)
{
    EXPECT_EQ(MakeLinkAddress("www.example.com/x"), "http://www.example.com/x");
}

TEST(LinkAddress, OtherSchemesStay)
{
    EXPECT_EQ(MakeLinkAddress("rtsp://camera/1"), "rtsp://camera/1");
    EXPECT_EQ(MakeLinkAddress("mailto:a@b.c"), "mailto:a@b.c");
}

TEST(LinkAddress, EmptyTargetIsNoAddress)
{
    EXPECT_EQ(MakeLinkAddress(""), "");
}

TEST(LinkAddress, SchemesOfTheWorkbookLibraryAreNoAddress)
{
    EXPECT_EQ(MakeLinkAddress("internal:Sheet2!A1"), "");
    EXPECT_EQ(MakeLinkAddress("external:book.xlsx"), "");
}

TEST(LinkAddress, AddressOf2079CharactersIsTheLongest)
{
    const std::string longest = "http://h/" + std::string(2070, 'x');
    EXPECT_EQ(MakeLinkAddress(longest), longest);
    EXPECT_EQ(MakeLinkAddress(longest + "x"), "");
}

}  // namespace
