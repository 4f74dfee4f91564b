#include "NQXHost/SystemText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

bool IsUtf8(const std::string& text)
{
    return NQX_IsUtf8(text.data(), text.size());
}

}  // namespace

TEST(NqxIsUtf8, HoldsForValidText)
{
    EXPECT_TRUE(IsUtf8(""));
    EXPECT_TRUE(IsUtf8("plain text that is longer than one block of eight"));
    EXPECT_TRUE(IsUtf8(std::string("a\0b", 3)));
    EXPECT_TRUE(IsUtf8("gr\xC3\xBC\xC3\x9F"));
    EXPECT_TRUE(IsUtf8("\xE6\x8A\xA5\xE8\xA1\xA8"));
    EXPECT_TRUE(IsUtf8("\xF0\x9F\x93\xB7 camera"));
    EXPECT_TRUE(IsUtf8("\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"));
    EXPECT_TRUE(IsUtf8("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"));
}

TEST(NqxIsUtf8, FailsForOverlongForms)
{
    EXPECT_FALSE(IsUtf8("\xC0\x80"));
    EXPECT_FALSE(IsUtf8("\xC1\xBF"));
    EXPECT_FALSE(IsUtf8("\xE0\x9F\xBF"));
    EXPECT_FALSE(IsUtf8("\xF0\x8F\xBF\xBF"));
}

TEST(NqxIsUtf8, FailsForSurrogatesAndBeyondTheLastLetter)
{
    EXPECT_FALSE(IsUtf8("\xED\xA0\x80"));
    EXPECT_FALSE(IsUtf8("\xED\xBF\xBF"));
    EXPECT_FALSE(IsUtf8("\xF4\x90\x80\x80"));
    EXPECT_FALSE(IsUtf8("\xF5\x80\x80\x80"));
}

TEST(NqxIsUtf8, FailsForCutOrStrayBytesWhereverTheyStand)
{
    EXPECT_FALSE(IsUtf8("\x80"));
    EXPECT_FALSE(IsUtf8("\xFF"));
    EXPECT_FALSE(IsUtf8("\xC3"));
    EXPECT_FALSE(IsUtf8("\xE6\x8A"));
    EXPECT_FALSE(IsUtf8("\xF0\x9F\x93"));
    EXPECT_FALSE(IsUtf8("\xE6\x8A\x41"));
    for (std::size_t at = 0; at < 20; ++at) {
        std::string text(20, 'x');
        text[at] = '\xBF';
        EXPECT_FALSE(IsUtf8(text)) << at;
    }
}

TEST(NqxPathText, KeepsUtf8AndTakesNullForEmpty)
{
    EXPECT_EQ(NQX_PathText("/tmp/\xE6\x8A\xA5/"), "/tmp/\xE6\x8A\xA5/");
    EXPECT_EQ(NQX_PathText(nullptr), "");
}

TEST(NqxLocalText, ComesBackAsItWas)
{
    const std::string text = "exports 2026/";
    EXPECT_EQ(NQX_UTF8ToLocal(text), text);
    EXPECT_EQ(NQX_LocalToUTF8(NQX_UTF8ToLocal(text)), text);
}
