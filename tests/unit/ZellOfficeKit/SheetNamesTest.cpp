#include "SheetNames.h"

#include <gtest/gtest.h>

#include <string>

using ZellOfficeKit::CSheetNames;

namespace {

std::string Taken(const std::string& wanted)
{
    CSheetNames names;
    return names.Take(wanted);
}

TEST(SheetNames, ValidNameStays)
{
    EXPECT_EQ(Taken("Alarms 2026"), "Alarms 2026");
}

TEST(SheetNames, NameOf31CharactersStays)
{
    EXPECT_EQ(Taken(std::string(31, 'n')), std::string(31, 'n'));
}

TEST(SheetNames, NameOf32CharactersIsCut)
{
    EXPECT_EQ(Taken(std::string(32, 'n')), std::string(31, 'n'));
}

TEST(SheetNames, CutNeverHalvesAnEmoji)
{
    EXPECT_EQ(Taken(std::string(30, 'n') + "\xF0\x9F\x93\xB7"), std::string(30, 'n'));
}

TEST(SheetNames, ForbiddenCharactersBecomeUnderscores)
{
    EXPECT_EQ(Taken("a[b]c:d*e?f/g\\h\ni"), "a_b_c_d_e_f_g_h_i");
}

TEST(SheetNames, ApostrophesAtEitherEndBecomeUnderscores)
{
    EXPECT_EQ(Taken("'it's'"), "_it's_");
    EXPECT_EQ(Taken("'"), "_");
    EXPECT_EQ(Taken(std::string(30, 'n') + "'n"), std::string(30, 'n') + "_");
}

TEST(SheetNames, EmptyNameBecomesSheet)
{
    EXPECT_EQ(Taken(""), "Sheet");
}

TEST(SheetNames, HistoryIsTheReadersOwn)
{
    EXPECT_EQ(Taken("hiStory"), "hiStory_");
}

TEST(SheetNames, InvalidUtf8IsReplaced)
{
    EXPECT_EQ(Taken("a\xFFz"), "a\xEF\xBF\xBDz");
}

TEST(SheetNames, RepeatedNameGetsANumberRegardlessOfCase)
{
    CSheetNames names;
    names.Take("Alarms");
    EXPECT_EQ(names.Take("ALARMS"), "ALARMS (2)");
    EXPECT_EQ(names.Take("alarms"), "alarms (3)");
}

TEST(SheetNames, UmlautsAreTheSameInBothCases)
{
    CSheetNames names;
    names.Take("T\xC3\xBCr");
    EXPECT_EQ(names.Take("T\xC3\x9CR"), "T\xC3\x9CR (2)");
}

TEST(SheetNames, LongRepeatedNameIsCutForItsNumber)
{
    CSheetNames names;
    names.Take(std::string(31, 'n'));
    EXPECT_EQ(names.Take(std::string(40, 'n')), std::string(27, 'n') + " (2)");
}

TEST(SheetNames, ContinuationPassesOverANameThatIsTaken)
{
    CSheetNames names;
    names.Take("Alarms");
    names.Take("Alarms (2)");
    EXPECT_EQ(names.TakeContinuation("Alarms", 2), "Alarms (3)");
}

}  // namespace
