#include "NQX/NQX.h"
#include "tests/unit/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

TEST(NqxAccessFile, FindsAFileWithANameInUtf8)
{
    const TempFolder folder;
    const std::string path = folder.File("\xE6\x8A\xA5\xE8\xA1\xA8.txt");
    std::ofstream(std::filesystem::u8path(path)) << "x";
    EXPECT_EQ(NQX_AccessFile(path.c_str(), 0), 0);
    EXPECT_EQ(NQX_AccessFile(path.c_str(), 2), 0);
    EXPECT_EQ(NQX_AccessFile(path.c_str(), 4), 0);
    EXPECT_EQ(NQX_AccessFile(path.c_str(), 6), 0);
}

TEST(NqxAccessFile, OfAMissingFileIsMinusOneWithTheSystemsError)
{
    const TempFolder folder;
    NQX_SetLastError(0);
    EXPECT_EQ(NQX_AccessFile(folder.File("missing").c_str(), 0), -1);
    EXPECT_EQ(NQX_GetLastError(), 2);
}

TEST(NqxAccessFile, OfAFolderIsZero)
{
    const TempFolder folder;
    EXPECT_EQ(NQX_AccessFile(folder.Text().c_str(), 0), 0);
}

TEST(NqxAccessFile, OfANullOrEmptyPathIsMinusOne)
{
    EXPECT_EQ(NQX_AccessFile(nullptr, 0), -1);
    EXPECT_EQ(NQX_AccessFile("", 0), -1);
}
