#include "NQX/NQX.h"
#include "tests/unit/TempFolder.h"
#include "tests/unit/ZellBase/Files.h"
#include "ZellBase/FileSystem.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace FileSystem = Zell::Base::FileSystem;

namespace {

// Some systems take no more than 260 letters unless a path is given in a form of its own.
std::string LongFolder(const TempFolder& folder)
{
    std::string path = folder.File("long");
    for (int i = 0; i < 12; ++i)
        path += "/" + std::string(60, 'a') + "\xE6\x8A\xA5";
    return path;
}

TEST(LongPath, OfSevenHundredLettersServesEveryOperation)
{
    const TempFolder folder;
    const std::string deep = LongFolder(folder);
    ASSERT_GT(deep.size(), 700u);
    EXPECT_NE(FileSystem::DirectoryExists(deep.c_str()), 0);
    ASSERT_EQ(FileSystem::MakeFullDir(deep.c_str()), 0);
    EXPECT_EQ(FileSystem::DirectoryExists(deep.c_str()), 0);
    WriteThrough(deep + "/one", FileSystem::kOpenTruncate, "content");
    EXPECT_EQ(NQX_AccessFile((deep + "/one").c_str(), 0), 0);
    EXPECT_EQ(FileSystem::CopyFileW((deep + "/one").c_str(), (deep + "/two").c_str(), 1), 0);
    EXPECT_EQ(FileSystem::RenameFile((deep + "/two").c_str(), (deep + "/three").c_str()), 0);
    EXPECT_EQ(FileSystem::DeleteFileW((deep + "/one").c_str()), 0);
    FileSystem::SearchFileParam search;
    search.folder = deep;
    std::vector<FileSystem::FileInfo> files;
    ASSERT_EQ(FileSystem::GetFilesInDir(search, files), 0);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].name, "three");
    EXPECT_EQ(files[0].path, deep + "/three");
    EXPECT_EQ(files[0].size, 7);
    EXPECT_EQ(FileSystem::RemoveDirRecursively(folder.File("long").c_str()), 0);
    EXPECT_NE(FileSystem::DirectoryExists(folder.File("long").c_str()), 0);
}

}  // namespace
