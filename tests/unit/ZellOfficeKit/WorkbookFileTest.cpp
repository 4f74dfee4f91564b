#include "OfficeTest.h"
#include "ZellOfficeKitHost/OfficeFolders.h"

#include <chrono>
#include <filesystem>
#include <fstream>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ZellOfficeKit::CExcelControllorWithC;
using ZellOfficeKit::OfficeLimits;

namespace {

class WorkbookFile : public OfficeTest
{
protected:
    void FailQuickly()
    {
        OfficeLimits limits;
        limits.init_failure_delay_ms = 0;
        Lower(limits);
    }
};

TEST_F(WorkbookFile, FolderHoldsNothingBeforeClose)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "x");
    EXPECT_THAT(NamesInReports(), IsEmpty());
    book->Close();
    EXPECT_THAT(NamesInReports(), ElementsAre("r.xlsx"));
    EXPECT_THAT(NamesInWork(), IsEmpty());
}

TEST_F(WorkbookFile, CloseReplacesAnOlderReport)
{
    std::ofstream(Report("r.xlsx")) << "an older report";
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "new");
    EXPECT_EQ(ReadWhole(Report("r.xlsx")), "an older report");
    book->Close();
    EXPECT_EQ(CellsOf(book.path())["A1"], "new");
}

TEST_F(WorkbookFile, WorkbookWithoutASheetOpens)
{
    Book book(Report("r.xlsx"));
    book->Close();
    EXPECT_THAT(SheetNamesOf(book.path()), SizeIs(1));
}

TEST_F(WorkbookFile, SheetWithoutACellOpens)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Empty");
    book->SetColumnWidth(0, 0, 30);
    book->Close();
    EXPECT_EQ(AskOpenpyxl(book.path(), "print(book.sheetnames, book.active.dimensions)"), "['Empty'] A1:A1");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookFile, OneObjectWritesOneWorkbookAfterTheOther)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "one");
    book->Close();
    EXPECT_FALSE(book->AddSheetByName("Alarms"));
    ASSERT_TRUE(book->Init(Report("s.xlsx"), ""));
    ASSERT_TRUE(book->AddSheetByName("Alarms"));
    EXPECT_EQ(book->GetUsedRowsCount(), 0);
    book.Text(0, 0, "two");
    book->Close();
    EXPECT_EQ(CellsOf(Report("r.xlsx"))["A1"], "one");
    EXPECT_EQ(CellsOf(Report("s.xlsx"))["A1"], "two");
}

TEST_F(WorkbookFile, InitDiscardsAWorkbookLeftOpen)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "left");
    ASSERT_TRUE(book->Init(Report("s.xlsx"), ""));
    EXPECT_FALSE(std::filesystem::exists(Report("r.xlsx")));
    book->AddSheetByName("Alarms");
    book->Close();
    EXPECT_THAT(NamesInReports(), ElementsAre("s.xlsx"));
}

TEST_F(WorkbookFile, FurtherSheetOfTheSamePathBelongsToTheSameReport)
{
    Book book(Report("r.xlsx"));
    for (const char* name : {"Alarms", "Doors", "Cameras"}) {
        ASSERT_TRUE(book->Init(Report("r.xlsx"), ""));
        ASSERT_TRUE(book->AddSheetByName(name));
        book.Text(0, 0, std::string("first of ") + name);
    }
    book->AddSheetByName("Alarms");
    book.Text(1, 0, "second of Alarms");
    book->Close();
    EXPECT_THAT(NamesInReports(), ElementsAre("r.xlsx"));
    EXPECT_THAT(SheetNamesOf(Report("r.xlsx")), ElementsAre("Alarms", "Doors", "Cameras"));
    EXPECT_EQ(CellsOf(Report("r.xlsx")), (Cells{{"A1", "first of Alarms"}, {"A2", "second of Alarms"}}));
    EXPECT_EQ(CellsOf(Report("r.xlsx"), 3), (Cells{{"A1", "first of Cameras"}}));
}

TEST_F(WorkbookFile, SheetThatIsBegunAgainBeginsTheReportAnew)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "stale");
    book->AddSheetByName("Doors");
    ASSERT_TRUE(book->Init(Report("r.xlsx"), ""));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "fresh");
    book->Close();
    EXPECT_THAT(SheetNamesOf(Report("r.xlsx")), ElementsAre("Alarms"));
    EXPECT_EQ(CellsOf(Report("r.xlsx")), (Cells{{"A1", "fresh"}}));
}

TEST_F(WorkbookFile, InitThatFailsInBetweenLosesNoSheet)
{
    FailQuickly();
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "kept");
    std::filesystem::create_directory(Report("r.xlsx"));
    EXPECT_FALSE(book->Init(Report("r.xlsx"), ""));
    std::filesystem::remove(Report("r.xlsx"));
    ASSERT_TRUE(book->Init(Report("r.xlsx"), ""));
    ASSERT_TRUE(book->AddSheetByName("Doors"));
    book->Close();
    EXPECT_EQ(CellsOf(Report("r.xlsx")), (Cells{{"A1", "kept"}}));
    EXPECT_THAT(SheetNamesOf(Report("r.xlsx")), ElementsAre("Alarms", "Doors"));
}

TEST_F(WorkbookFile, CloseWithoutAWorkbookDoesNothing)
{
    CExcelControllorWithC excel(nullptr);
    excel.Close();
    EXPECT_FALSE(excel.AddSheetByName("Alarms"));
    EXPECT_EQ(excel.GetUsedRowsCount(), 0);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookFile, PathInAMissingFolderIsRefused)
{
    FailQuickly();
    CExcelControllorWithC excel(nullptr);
    EXPECT_FALSE(excel.Init(Report("none/r.xlsx"), ""));
    EXPECT_FALSE(excel.AddSheetByName("Alarms"));
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("none/r.xlsx can't be created")));
    EXPECT_THAT(NamesInWork(), IsEmpty());
}

TEST_F(WorkbookFile, FolderInPlaceOfTheFileIsRefused)
{
    FailQuickly();
    CExcelControllorWithC excel(nullptr);
    EXPECT_FALSE(excel.Init(reports_.Path().u8string(), ""));
}

TEST_F(WorkbookFile, NameThatIsTooLongIsRefused)
{
    FailQuickly();
    CExcelControllorWithC excel(nullptr);
    EXPECT_FALSE(excel.Init(Report(std::string(300, 'n') + ".xlsx"), ""));
    EXPECT_THAT(NamesInReports(), IsEmpty());
}

TEST_F(WorkbookFile, WorkFolderThatCantBeMadeIsRefused)
{
    FailQuickly();
    std::ofstream(Report("file")).close();
    ZellOfficeKit::SetWorkFolder(Report("file/below"));
    CExcelControllorWithC excel(nullptr);
    EXPECT_FALSE(excel.Init(Report("r.xlsx"), ""));
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("the work folder can't be written")));
}

TEST_F(WorkbookFile, RefusalTakesItsTimeSoThatRetriesDoNotSpin)
{
    OfficeLimits limits;
    limits.init_failure_delay_ms = 40;
    Lower(limits);
    CExcelControllorWithC excel(nullptr);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(excel.Init(Report("none/r.xlsx"), ""));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(40));
    EXPECT_EQ(OfficeLimits().init_failure_delay_ms, 1000);
}

TEST_F(WorkbookFile, RetryAfterARefusalSucceeds)
{
    FailQuickly();
    CExcelControllorWithC excel(nullptr);
    EXPECT_FALSE(excel.Init(Report("later/r.xlsx"), ""));
    std::filesystem::create_directory(Report("later"));
    EXPECT_TRUE(excel.Init(Report("later/r.xlsx"), ""));
}

TEST_F(WorkbookFile, FolderThatGoesAwayLeavesTheWorkbookSetAside)
{
    std::filesystem::create_directory(Report("sub"));
    Book book(Report("sub/r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "kept");
    std::filesystem::remove(Report("sub"));
    book->Close();
    ASSERT_THAT(NamesSetAside(), ElementsAre(HasSubstr("r-")));
    EXPECT_EQ(CellsOf(work_.File("set-aside/" + NamesSetAside()[0]))["A1"], "kept");
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("is not whole: it can't be moved to its path")));
}

TEST_F(WorkbookFile, TooLittleSpaceForPackingIsToldBeforeIt)
{
    std::ofstream(Report("r.xlsx")) << "an older report";
    OfficeLimits limits;
    limits.spare_bytes = 1ULL << 60U;
    Lower(limits);
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "x");
    book->Close();
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("bytes left and packing takes")));
    EXPECT_THAT(NamesInReports(), IsEmpty());
    EXPECT_THAT(NamesInWork(), IsEmpty());
    // The older report would be taken for the new one.
    ASSERT_THAT(NamesSetAside(), SizeIs(1));
    EXPECT_EQ(ReadWhole(work_.File("set-aside/" + NamesSetAside()[0])), "an older report");
}

TEST_F(WorkbookFile, WorkFolderIsForItsOwnerOnly)
{
    ZellOfficeKit::SetWorkFolder(work_.File("new/"));
    EXPECT_EQ(ZellOfficeKit::WorkFolder(), work_.File("new"));
    Book book(Report("r.xlsx"));
    EXPECT_EQ(std::filesystem::status(work_.File("new")).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(WorkbookFile, NameInAnotherScriptIsThePathAsItStands)
{
    Book book(Report("\xE6\x8A\xA5\xE8\xAD\xA6.xlsx"));
    book->AddSheetByName("Alarms");
    book->Close();
    EXPECT_THAT(NamesInReports(), ElementsAre("\xE6\x8A\xA5\xE8\xAD\xA6.xlsx"));
}

}  // namespace
