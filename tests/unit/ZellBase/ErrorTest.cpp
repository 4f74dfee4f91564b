#include "ZellBase/Error.h"

#include <gtest/gtest.h>

#include <thread>

using Zell::Base::Error::ErrorCode;

TEST(ErrorCode, OfThreeNumbersKeepsTheModuleAndTheCode)
{
    constexpr ErrorCode error(2, 20, 3);
    EXPECT_EQ(error.iFirstCode, 20);
    EXPECT_EQ(error.iSecondCode, 3);
}

TEST(ErrorCode, IsNoneAtFirst)
{
    constexpr ErrorCode error;
    EXPECT_EQ(error.iFirstCode, 0);
    EXPECT_EQ(error.iSecondCode, 0);
}

TEST(LastError, StaysUntilItIsReplaced)
{
    Zell::Base::Error::SetLastError(ErrorCode(2, 20, 3215));
    EXPECT_EQ(Zell::Base::Error::GetLastError().iFirstCode, 20);
    EXPECT_EQ(Zell::Base::Error::GetLastError().iSecondCode, 3215);
    Zell::Base::Error::SetLastError(ErrorCode());
    EXPECT_EQ(Zell::Base::Error::GetLastError().iFirstCode, 0);
}

TEST(LastError, BelongsToItsThread)
{
    Zell::Base::Error::SetLastError(ErrorCode(2, 20, 3));
    ErrorCode seen(9, 9);
    std::thread([&seen] {
        seen = Zell::Base::Error::GetLastError();
        Zell::Base::Error::SetLastError(ErrorCode(2, 20, 3209));
    }).join();
    EXPECT_EQ(seen.iFirstCode, 0);
    EXPECT_EQ(seen.iSecondCode, 0);
    EXPECT_EQ(Zell::Base::Error::GetLastError().iSecondCode, 3);
}
