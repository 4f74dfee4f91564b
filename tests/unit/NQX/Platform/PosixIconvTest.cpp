#include "Platform/PosixIconv.h"

#include <gtest/gtest.h>

TEST(ConvertCodePage, GoesToLatin1AndBack)
{
    EXPECT_EQ(ConvertCodePage("gr\xC3\xBC\xC3\x9F", "UTF-8", "ISO-8859-1"), "gr\xFC\xDF");
    EXPECT_EQ(ConvertCodePage("gr\xFC\xDF", "ISO-8859-1", "UTF-8"), "gr\xC3\xBC\xC3\x9F");
}

TEST(ConvertCodePage, PutsOneQuestionMarkForALetterThatIsMissing)
{
    EXPECT_EQ(ConvertCodePage("a\xE6\x8A\xA5\xE8\xA1\xA8z", "UTF-8", "ISO-8859-1"), "a??z");
    EXPECT_EQ(ConvertCodePage("\xF0\x9F\x93\xB7", "UTF-8", "ISO-8859-1"), "?");
}

TEST(ConvertCodePage, PutsAQuestionMarkForAByteThatIsNoLetter)
{
    EXPECT_EQ(ConvertCodePage("a\xFFz", "UTF-8", "ISO-8859-1"), "a?z");
    EXPECT_EQ(ConvertCodePage("a\xE6\x8A", "UTF-8", "ISO-8859-1"), "a?");
}

TEST(ConvertCodePage, ConvertsTextThatIsLongerThanOnePiece)
{
    std::string utf8;
    for (int i = 0; i < 5000; ++i)
        utf8 += "\xC3\xBC";
    EXPECT_EQ(ConvertCodePage(utf8, "UTF-8", "ISO-8859-1"), std::string(5000, '\xFC'));
}

TEST(ConvertCodePage, KeepsTheTextForAnUnknownCodePage)
{
    EXPECT_EQ(ConvertCodePage("gr\xC3\xBC", "UTF-8", "no such page"), "gr\xC3\xBC");
}
