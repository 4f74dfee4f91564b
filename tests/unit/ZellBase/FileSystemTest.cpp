#include "NQX/NQX.h"
#include "tests/unit/Platform/SystemErrors.h"
#include "tests/unit/TempFolder.h"
#include "tests/unit/ZellBase/Files.h"
#include "ZellBase/FileSystem.h"

#include <gmock/gmock.h>

#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace FileSystem = Zell::Base::FileSystem;
namespace fs = std::filesystem;

namespace {

constexpr char kReport[] = "\xE6\x8A\xA5\xE8\xA1\xA8.txt";

}  // namespace

TEST(DirectoryExists, IsZeroForAFolderOnly)
{
    const TempFolder folder;
    Put(folder.File("file"), "x");
    EXPECT_EQ(FileSystem::DirectoryExists(folder.Text().c_str()), 0);
    EXPECT_EQ(FileSystem::DirectoryExists(folder.Path().u8string().c_str()), 0);
    EXPECT_NE(FileSystem::DirectoryExists(folder.File("file").c_str()), 0);
    EXPECT_NE(FileSystem::DirectoryExists(folder.File("missing").c_str()), 0);
    EXPECT_NE(FileSystem::DirectoryExists(""), 0);
    EXPECT_NE(FileSystem::DirectoryExists(nullptr), 0);
}

TEST(DirectoryExists, LeavesTheReasonWithTheThread)
{
    const TempFolder folder;
    NQX_SetLastError(0);
    EXPECT_EQ(FileSystem::DirectoryExists(folder.File("missing").c_str()), SystemErrors::kNotThere);
    EXPECT_EQ(NQX_GetLastError(), SystemErrors::kNotThere);
}

TEST(MakeFullDir, MakesTheParentsToo)
{
    const TempFolder folder;
    const std::string path = folder.File("a/\xE6\x8A\xA5/c/");
    EXPECT_EQ(FileSystem::MakeFullDir(path.c_str()), 0);
    EXPECT_EQ(FileSystem::DirectoryExists(path.c_str()), 0);
    EXPECT_EQ(FileSystem::MakeFullDir(path.c_str()), 0);
}

TEST(MakeFullDir, FailsWhereAFileStandsInTheWay)
{
    const TempFolder folder;
    Put(folder.File("file"), "x");
    NQX_SetLastError(0);
    EXPECT_NE(FileSystem::MakeFullDir(folder.File("file/below").c_str()), 0);
    EXPECT_EQ(NQX_GetLastError(), SystemErrors::kNoFolder);
    EXPECT_NE(FileSystem::MakeFullDir(folder.File("file").c_str()), 0);
    EXPECT_NE(FileSystem::MakeFullDir(""), 0);
    EXPECT_EQ(Content(folder.File("file")), "x");
}

TEST(OpenFile, WithFlags15AppendsAndCreates)
{
    const TempFolder folder;
    WriteThrough(folder.File(kReport), 15, "one");
    WriteThrough(folder.File(kReport), 15, "two");
    EXPECT_EQ(Content(folder.File(kReport)), "onetwo");
}

TEST(OpenFile, WithFlags22CreatesOrEmpties)
{
    const TempFolder folder;
    WriteThrough(folder.File(kReport), 22, "one and more");
    WriteThrough(folder.File(kReport), 22, "two");
    EXPECT_EQ(Content(folder.File(kReport)), "two");
}

TEST(OpenFile, GivesMinusOneWithTheReasonForWhatCannotBeOpened)
{
    const TempFolder folder;
    NQX_SetLastError(0);
    EXPECT_EQ(FileSystem::OpenFile(folder.File("missing/file").c_str(), 15, 8192), NoHandle());
    EXPECT_EQ(NQX_GetLastError(), SystemErrors::kNoPath);
    EXPECT_EQ(FileSystem::OpenFile(folder.Text().c_str(), 22, 8192), NoHandle());
    EXPECT_EQ(FileSystem::OpenFile(folder.File("file").c_str(), 3, 8192), NoHandle());
    EXPECT_FALSE(fs::exists(folder.File("file")));
}

TEST(WriteFile, OfNothingIsGood)
{
    const TempFolder folder;
    void* const handle = FileSystem::OpenFile(folder.File("file").c_str(), 22, 8192);
    unsigned int written = 7;
    EXPECT_EQ(FileSystem::WriteFile(handle, nullptr, 0, &written), 0);
    EXPECT_EQ(written, 0u);
    EXPECT_EQ(FileSystem::WriteFile(handle, nullptr, 0, nullptr), 0);
    EXPECT_EQ(FileSystem::CloseFile(handle), 0);
}

TEST(WriteFile, FailsForNoHandle)
{
    char text[] = "x";
    unsigned int written = 7;
    EXPECT_NE(FileSystem::WriteFile(NoHandle(), text, 1, &written), 0);
    EXPECT_EQ(written, 0u);
    EXPECT_NE(FileSystem::CloseFile(NoHandle()), 0);
}

TEST(DeleteFileW, RemovesAFileButNoFolder)
{
    const TempFolder folder;
    Put(folder.File(kReport), "x");
    fs::create_directories(folder.File("sub"));
    EXPECT_EQ(FileSystem::DeleteFileW(folder.File(kReport).c_str()), 0);
    EXPECT_FALSE(fs::exists(fs::u8path(folder.File(kReport))));
    EXPECT_EQ(FileSystem::DeleteFileW(folder.File(kReport).c_str()), SystemErrors::kNotThere);
    EXPECT_NE(FileSystem::DeleteFileW(folder.File("sub").c_str()), 0);
    EXPECT_TRUE(fs::exists(folder.File("sub")));
}

TEST(CopyFileW, ReplacesTheTarget)
{
    const TempFolder folder;
    const std::string content(3 * 1024 * 1024 + 7, 'x');
    Put(folder.File("source"), content);
    Put(folder.File(kReport), "old");
    EXPECT_EQ(FileSystem::CopyFileW(folder.File("source").c_str(), folder.File(kReport).c_str(), 0), 0);
    EXPECT_EQ(Content(folder.File(kReport)), content);
    EXPECT_EQ(Content(folder.File("source")), content);
    EXPECT_EQ(Found(folder.Text(), false, false).size(), 2u);
}

TEST(CopyFileW, CopiesAnEmptyFile)
{
    const TempFolder folder;
    Put(folder.File("source"), "");
    EXPECT_EQ(FileSystem::CopyFileW(folder.File("source").c_str(), folder.File("target").c_str(), 1), 0);
    EXPECT_TRUE(fs::exists(folder.File("target")));
}

TEST(CopyFileW, KeepsAnExistingTargetIfAskedTo)
{
    const TempFolder folder;
    Put(folder.File("source"), "new");
    Put(folder.File("target"), "old");
    EXPECT_EQ(FileSystem::CopyFileW(folder.File("source").c_str(), folder.File("target").c_str(), 1),
              SystemErrors::kExists);
    EXPECT_EQ(Content(folder.File("target")), "old");
}

TEST(CopyFileW, OntoItselfKeepsTheFile)
{
    const TempFolder folder;
    Put(folder.File("file"), "content");
    EXPECT_EQ(FileSystem::CopyFileW(folder.File("file").c_str(), folder.File("file").c_str(), 0), 0);
    EXPECT_EQ(Content(folder.File("file")), "content");
}

TEST(CopyFileW, OfWhatIsNoFileFailsAndLeavesTheTarget)
{
    const TempFolder folder;
    fs::create_directories(folder.File("sub"));
    Put(folder.File("target"), "old");
    NQX_SetLastError(0);
    EXPECT_EQ(FileSystem::CopyFileW(folder.File("missing").c_str(), folder.File("target").c_str(), 0),
              SystemErrors::kNotThere);
    EXPECT_EQ(NQX_GetLastError(), SystemErrors::kNotThere);
    EXPECT_NE(FileSystem::CopyFileW(folder.File("sub").c_str(), folder.File("target").c_str(), 0), 0);
    EXPECT_EQ(Content(folder.File("target")), "old");
    EXPECT_NE(FileSystem::CopyFileW(folder.File("target").c_str(), folder.File("sub").c_str(), 0), 0);
    EXPECT_EQ(Found(folder.Text(), true, true).size(), 2u);
}

TEST(RenameFile, ReplacesTheTarget)
{
    const TempFolder folder;
    Put(folder.File("source"), "new");
    Put(folder.File(kReport), "old");
    EXPECT_EQ(FileSystem::RenameFile(folder.File("source").c_str(), folder.File(kReport).c_str()), 0);
    EXPECT_EQ(Content(folder.File(kReport)), "new");
    EXPECT_FALSE(fs::exists(folder.File("source")));
    EXPECT_EQ(FileSystem::RenameFile(folder.File("source").c_str(), folder.File(kReport).c_str()),
              SystemErrors::kNotThere);
}

TEST(RemoveDirRecursively, RemovesAllThatIsInIt)
{
    const TempFolder folder;
    fs::create_directories(folder.File("a/b/c"));
    Put(folder.File("a/one"), "x");
    Put(folder.File("a/b/c/.hidden"), "x");
    EXPECT_EQ(FileSystem::RemoveDirRecursively(folder.File("a/").c_str()), 0);
    EXPECT_FALSE(fs::exists(folder.File("a")));
}

TEST(RemoveDirRecursively, FailsForWhatIsNoFolder)
{
    const TempFolder folder;
    Put(folder.File("file"), "x");
    EXPECT_EQ(FileSystem::RemoveDirRecursively(folder.File("missing").c_str()), SystemErrors::kNotThere);
    EXPECT_EQ(FileSystem::RemoveDirRecursively(folder.File("file").c_str()), SystemErrors::kNoFolder);
    EXPECT_NE(FileSystem::RemoveDirRecursively(""), 0);
    EXPECT_EQ(Content(folder.File("file")), "x");
}

TEST(GetCurExePath, IsTheFolderWithASlashAndAZero)
{
    char buffer[260];
    std::memset(buffer, 'x', sizeof buffer);
    ASSERT_EQ(FileSystem::GetCurExePath(buffer, sizeof buffer), 0);
    const std::string folder = buffer;
    EXPECT_EQ(folder.back(), '/');
    EXPECT_TRUE(fs::exists(folder + PROGRAM_NAME));
}

TEST(GetCurExePath, FailsWhenTheBufferIsTooSmall)
{
    char buffer[260] = "";
    ASSERT_EQ(FileSystem::GetCurExePath(buffer, sizeof buffer), 0);
    const int size = static_cast<int>(std::strlen(buffer));
    EXPECT_EQ(FileSystem::GetCurExePath(buffer, size + 1), 0);
    NQX_SetLastError(0);
    EXPECT_EQ(FileSystem::GetCurExePath(buffer, size), SystemErrors::kTooSmall);
    EXPECT_EQ(NQX_GetLastError(), SystemErrors::kTooSmall);
    EXPECT_NE(FileSystem::GetCurExePath(buffer, 0), 0);
    EXPECT_NE(FileSystem::GetCurExePath(nullptr, 260), 0);
}

TEST(GetFilesInDir, ListsFilesBelowWithTheirSizes)
{
    const TempFolder folder;
    fs::create_directories(folder.File("a/b"));
    Put(folder.File("one"), "1");
    Put(folder.File("a/.two"), "12");
    Put(folder.File(std::string("a/b/") + kReport), "123");
    const std::map<std::string, long long> files = {
        {folder.File("one"), 1}, {folder.File("a/.two"), 2}, {folder.File(std::string("a/b/") + kReport), 3}};
    EXPECT_EQ(Found(folder.Text(), true, false), files);
    EXPECT_EQ(Found(folder.Path().u8string(), true, false), files);
}

TEST(GetFilesInDir, ListsOneLevelOrFoldersIfAsked)
{
    const TempFolder folder;
    fs::create_directories(folder.File("a"));
    Put(folder.File("one"), "1");
    Put(folder.File("a/two"), "12");
    using ::testing::Key;
    using ::testing::UnorderedElementsAre;
    EXPECT_THAT(Found(folder.Text(), false, false), UnorderedElementsAre(Key(folder.File("one"))));
    EXPECT_THAT(Found(folder.Text(), false, true),
                UnorderedElementsAre(Key(folder.File("one")), Key(folder.File("a"))));
    EXPECT_THAT(
        Found(folder.Text(), true, true),
        UnorderedElementsAre(Key(folder.File("one")), Key(folder.File("a")), Key(folder.File("a/two"))));
}

TEST(GetFilesInDir, GivesNameAndTimeAndAppends)
{
    const TempFolder folder;
    const std::time_t before = std::time(nullptr);
    Put(folder.File("one"), "1");
    FileSystem::SearchFileParam search;
    search.folder = folder.Text();
    std::vector<FileSystem::FileInfo> files(1);
    ASSERT_EQ(FileSystem::GetFilesInDir(search, files), 0);
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[1].name, "one");
    EXPECT_GE(files[1].time, before - 1);
    EXPECT_LE(files[1].time, std::time(nullptr) + 1);
}

TEST(GetFilesInDir, FailsWithoutTheFolder)
{
    const TempFolder folder;
    FileSystem::SearchFileParam search;
    search.folder = folder.File("missing");
    std::vector<FileSystem::FileInfo> files;
    NQX_SetLastError(0);
    EXPECT_EQ(FileSystem::GetFilesInDir(search, files), SystemErrors::kNotThere);
    EXPECT_EQ(NQX_GetLastError(), SystemErrors::kNotThere);
    EXPECT_TRUE(files.empty());
}
