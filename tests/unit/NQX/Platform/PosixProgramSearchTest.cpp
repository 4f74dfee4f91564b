#include "NQX/NQX.h"
#include "NQXHost/ProgramSearch.h"
#include "tests/unit/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace {

// A working directory and a search path of the test's own.
class ProgramSearch : public ::testing::Test
{
protected:
    void SetUp() override
    {
        fs::create_directories(root_ / "work");
        fs::create_directories(root_ / "first");
        fs::create_directories(root_ / "second");
        before_ = fs::current_path();
        path_before_ = std::getenv("PATH");
        fs::current_path(root_ / "work");
        setenv("PATH", (First() + ":" + Second()).c_str(), 1);
    }
    void TearDown() override
    {
        setenv("PATH", path_before_.c_str(), 1);
        fs::current_path(before_);
    }

    std::string First() const { return (root_ / "first").string(); }
    std::string Second() const { return (root_ / "second").string(); }

    static void MakeFile(const fs::path& path, bool program)
    {
        std::ofstream(path) << "#!/bin/sh\n";
        if (program)
            fs::permissions(path, fs::perms::owner_all);
    }

    const TempFolder folder_;
    const fs::path root_ = folder_.Path();
    fs::path before_;
    std::string path_before_;
};

}  // namespace

TEST_F(ProgramSearch, FindsAnExeInTheWorkingDirectoryAsItStands)
{
    MakeFile("packer.exe", false);
    MakeFile(root_ / "first" / "packer", true);
    EXPECT_EQ(NQX_FindProgram("packer.exe"), "./packer.exe");
    EXPECT_EQ(NQX_AccessFile("packer.exe", 0), 0);
}

TEST_F(ProgramSearch, FindsAnExeWithoutItsSuffixInThePath)
{
    MakeFile(root_ / "second" / "packer", true);
    EXPECT_EQ(NQX_FindProgram("packer.exe"), Second() + "/packer");
    EXPECT_EQ(NQX_FindProgram("packer.EXE"), Second() + "/packer");
    EXPECT_EQ(NQX_AccessFile("packer.exe", 0), 0);
}

TEST_F(ProgramSearch, PassesOverWhatCannotBeStarted)
{
    MakeFile(root_ / "first" / "packer", false);
    fs::create_directories(root_ / "second" / "packer");
    EXPECT_EQ(NQX_FindProgram("packer.exe"), "");
    NQX_SetLastError(0);
    EXPECT_EQ(NQX_AccessFile("packer.exe", 0), -1);
    EXPECT_EQ(NQX_GetLastError(), 2);
}

TEST_F(ProgramSearch, TakesTheFirstFolderOfThePath)
{
    MakeFile(root_ / "first" / "packer", true);
    MakeFile(root_ / "second" / "packer", true);
    EXPECT_EQ(NQX_FindProgram("packer"), First() + "/packer");
}

TEST_F(ProgramSearch, LooksInTheWorkingDirectoryForAnEmptyEntryOfThePath)
{
    setenv("PATH", (First() + ":").c_str(), 1);
    MakeFile("packer", true);
    EXPECT_EQ(NQX_FindProgram("packer.exe"), "./packer");
}

TEST_F(ProgramSearch, GivesAPathBackAsItIs)
{
    MakeFile(root_ / "first" / "packer", true);
    EXPECT_EQ(NQX_FindProgram("./packer.exe"), "./packer.exe");
    EXPECT_EQ(NQX_AccessFile("./packer.exe", 0), -1);
}

TEST_F(ProgramSearch, FindsNothingForASuffixAlone)
{
    EXPECT_EQ(NQX_FindProgram(".exe"), "");
    EXPECT_EQ(NQX_AccessFile(".exe", 0), -1);
}

TEST_F(ProgramSearch, DoesNotTakeAnyFileForAProgram)
{
    MakeFile(root_ / "first" / "notes.txt", true);
    EXPECT_EQ(NQX_AccessFile("notes.txt", 0), -1);
}
