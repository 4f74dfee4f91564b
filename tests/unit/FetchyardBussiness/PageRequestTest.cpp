#include "FetchyardBussiness/DeterminantWriteFile/PageRequest.h"

#include <gtest/gtest.h>

namespace FetchyardBussiness {

TEST(PageRequest, TheNumberBehindThePageKeyIsReplaced)
{
    EXPECT_EQ(RewritePage(R"({"PageIndex":1,"PageSize":100})", 2), R"({"PageIndex":2,"PageSize":100})");
    EXPECT_EQ(RewritePage(R"({"A":[1,2],"PageIndex":9,"PageSize":100})", 10),
              R"({"A":[1,2],"PageIndex":10,"PageSize":100})");
}

TEST(PageRequest, APageThatIsTheLastMemberEmptiesTheText)
{
    EXPECT_EQ(RewritePage(R"({"PageSize":100,"PageIndex":1})", 2), "");
}

TEST(PageRequest, ATextWithoutAPageBecomesEmpty)
{
    EXPECT_EQ(RewritePage(R"({"PageSize":100,"Limit":5})", 2), "");
    EXPECT_EQ(RewritePage("", 2), "");
}

TEST(PageRequest, ABlankInFrontOfTheColonHidesTheKey)
{
    EXPECT_EQ(RewritePage(R"({"PageIndex" :1,"PageSize":100})", 2), "");
}

TEST(PageRequest, OnlyTheFirstOfTwoPagesIsReplaced)
{
    EXPECT_EQ(RewritePage(R"({"PageIndex":1,"PageIndex":5,"A":0})", 2),
              R"({"PageIndex":2,"PageIndex":5,"A":0})");
}

// The key is looked for as text, so one inside a string is taken as well.
TEST(PageRequest, AKeyInsideAStringIsTaken)
{
    EXPECT_EQ(RewritePage(R"({"Text":"\"PageIndex\":7","PageIndex":1,"A":0})", 2),
              R"({"Text":"\"PageIndex\":7","PageIndex":2,"A":0})");
    EXPECT_EQ(RewritePage(R"(x"PageIndex":7 and more, "PageIndex":1,)", 2),
              R"(x"PageIndex":2, "PageIndex":1,)");
}

}  // namespace FetchyardBussiness
