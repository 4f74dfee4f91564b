#include "tests/unit/TempFolder.h"
#include "tests/unit/ZellBase/Files.h"

namespace FileSystem = Zell::Base::FileSystem;
namespace fs = std::filesystem;

TEST(RemoveDirRecursively, RemovesLinksAndNotWhatTheyPointTo)
{
    const TempFolder folder;
    fs::create_directories(folder.File("kept"));
    fs::create_directories(folder.File("a"));
    Put(folder.File("kept/file"), "x");
    fs::create_directory_symlink(folder.File("kept"), folder.File("a/link"));
    fs::create_directory_symlink(folder.File("kept"), folder.File("link"));
    EXPECT_EQ(FileSystem::RemoveDirRecursively(folder.File("a").c_str()), 0);
    EXPECT_EQ(FileSystem::RemoveDirRecursively(folder.File("link/").c_str()), 0);
    EXPECT_FALSE(fs::exists(fs::symlink_status(folder.File("link"))));
    EXPECT_EQ(Content(folder.File("kept/file")), "x");
}

TEST(GetFilesInDir, DoesNotFollowLinksToFolders)
{
    const TempFolder folder;
    fs::create_directories(folder.File("a"));
    Put(folder.File("a/one"), "1");
    fs::create_directory_symlink(folder.Path(), folder.File("a/up"));
    fs::create_symlink(folder.File("nowhere"), folder.File("broken"));
    fs::create_symlink(folder.File("a/one"), folder.File("linked"));
    const std::map<std::string, long long> files = {{folder.File("a/one"), 1}, {folder.File("linked"), 1}};
    EXPECT_EQ(Found(folder.Text(), true, false), files);
}
