#include "station/Data/LoginTries.h"

#include <gtest/gtest.h>

using Station::LoginTries;

TEST(LoginTriesTest, FiveWrongPasswordsCloseAnAccount)
{
    LoginTries tries;
    EXPECT_EQ(tries.Of("anna", 100).tries, 5);
    for (int left = 4; left >= 0; --left) {
        EXPECT_EQ(tries.Of("anna", 100).closed_seconds, 0);
        EXPECT_EQ(tries.CountWrong("anna", 100).tries, left);
    }
    EXPECT_EQ(tries.Of("anna", 100).closed_seconds, LoginTries::kClosedSeconds);
    EXPECT_EQ(tries.Of("bo", 100).tries, 5);
}

TEST(LoginTriesTest, RightPasswordStartsTheCountAnew)
{
    LoginTries tries;
    for (int i = 0; i < 4; ++i)
        tries.CountWrong("anna", 100);
    tries.CountRight("anna");
    EXPECT_EQ(tries.CountWrong("anna", 100).tries, 4);
}

TEST(LoginTriesTest, AccountOpensWhenItsTimeIsOver)
{
    LoginTries tries;
    for (int i = 0; i < 5; ++i)
        tries.CountWrong("anna", 100 + i);
    const std::int64_t open_at = 104 + LoginTries::kClosedSeconds;
    EXPECT_EQ(tries.Of("anna", open_at - 1).closed_seconds, 1);
    EXPECT_EQ(tries.Of("anna", open_at).closed_seconds, 0);
    EXPECT_EQ(tries.CountWrong("anna", open_at).tries, 4);
}

TEST(LoginTriesTest, WrongPasswordKeepsAClosedAccountClosedNoLonger)
{
    LoginTries tries;
    for (int i = 0; i < 5; ++i)
        tries.CountWrong("anna", 100);
    EXPECT_EQ(tries.CountWrong("anna", 500).closed_seconds, 100 + LoginTries::kClosedSeconds - 500);
}

TEST(LoginTriesTest, TriesLongAgoAreForgotten)
{
    LoginTries tries;
    tries.CountWrong("anna", 100);
    EXPECT_EQ(tries.Of("anna", 100 + LoginTries::kClosedSeconds).tries, 5);
}

TEST(LoginTriesTest, NamesWithoutEndDoNotFillTheMemoryAndKeepTheYoungerCounts)
{
    LoginTries tries;
    for (int i = 0; i < 9999; ++i)
        tries.CountWrong("old " + std::to_string(i), 0);
    tries.CountWrong("anna", LoginTries::kClosedSeconds);
    tries.CountWrong("bo", LoginTries::kClosedSeconds);
    EXPECT_EQ(tries.Of("anna", LoginTries::kClosedSeconds).tries, 4);
    EXPECT_EQ(tries.Of("bo", LoginTries::kClosedSeconds).tries, 4);
}
