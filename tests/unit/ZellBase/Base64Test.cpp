#include "ZellBase/Util.h"

#include <gtest/gtest.h>

#include <string>

using Zell::Base::Encrypt::Base64Decode;
using Zell::Base::Encrypt::Base64Encode;

namespace {

std::string Encoded(const std::string& bytes)
{
    std::string text = "left over";
    EXPECT_TRUE(Base64Encode(text, bytes));
    return text;
}

std::string Decoded(const std::string& text)
{
    std::string bytes = "left over";
    EXPECT_TRUE(Base64Decode(bytes, text)) << text;
    return bytes;
}

}  // namespace

TEST(Base64, EncodesTheTestVectors)
{
    EXPECT_EQ(Encoded(""), "");
    EXPECT_EQ(Encoded("f"), "Zg==");
    EXPECT_EQ(Encoded("fo"), "Zm8=");
    EXPECT_EQ(Encoded("foo"), "Zm9v");
    EXPECT_EQ(Encoded("foob"), "Zm9vYg==");
    EXPECT_EQ(Encoded("fooba"), "Zm9vYmE=");
    EXPECT_EQ(Encoded("foobar"), "Zm9vYmFy");
    EXPECT_EQ(Encoded("\xFB\xFF\xFE"), "+//+");
}

TEST(Base64, DecodesTheTestVectors)
{
    EXPECT_EQ(Decoded(""), "");
    EXPECT_EQ(Decoded("Zg=="), "f");
    EXPECT_EQ(Decoded("Zm8="), "fo");
    EXPECT_EQ(Decoded("Zm9vYmFy"), "foobar");
    EXPECT_EQ(Decoded("+//+"), "\xFB\xFF\xFE");
}

TEST(Base64, BringsEveryByteBack)
{
    std::string bytes;
    for (int value = 0; value < 256; ++value)
        bytes += static_cast<char>(value);
    EXPECT_EQ(Decoded(Encoded(bytes)), bytes);
    EXPECT_EQ(Decoded(Encoded(bytes + "x")), bytes + "x");
}

TEST(Base64, PassesOverWhiteSpaceWhenDecoding)
{
    EXPECT_EQ(Decoded("Zm9v\r\nYm Fy\t\n"), "foobar");
}

TEST(Base64, RefusesWhatIsNoBase64WithAnEmptyResult)
{
    for (const char* text : {"Z", "Zg", "Zg=", "Zg===", "Zm9v=", "====", "=", "Zg==Zg==", "Zm9*", "Zm9\xFF",
                             "Zh==", "Zm9=", "<xml/>"}) {
        std::string bytes = "left over";
        EXPECT_FALSE(Base64Decode(bytes, text)) << text;
        EXPECT_EQ(bytes, "") << text;
    }
}

TEST(Base64, MayReplaceItsOwnInput)
{
    std::string text = "foobar";
    EXPECT_TRUE(Base64Encode(text, text));
    EXPECT_EQ(text, "Zm9vYmFy");
    EXPECT_TRUE(Base64Decode(text, text));
    EXPECT_EQ(text, "foobar");
}
