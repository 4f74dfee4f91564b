#include "NQX/NQX.h"

#include <gtest/gtest.h>

#include <thread>

TEST(NqxLastError, IsZeroOnANewThread)
{
    NQX_SetLastError(5);
    int seen = -1;
    std::thread([&seen] { seen = NQX_GetLastError(); }).join();
    EXPECT_EQ(seen, 0);
}

TEST(NqxLastError, OfOneThreadIsNotTouchedByAnother)
{
    NQX_SetLastError(5);
    std::thread([] { NQX_SetLastError(7); }).join();
    EXPECT_EQ(NQX_GetLastError(), 5);
}
