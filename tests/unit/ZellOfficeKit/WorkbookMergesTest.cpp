#include "OfficeTest.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ZellOfficeKit::Clxw_format_;

namespace {

constexpr char kSheet[] = "xl/worksheets/sheet1.xml";

class WorkbookMerges : public OfficeTest
{
protected:
    std::vector<std::string> Merges(const std::string& path) const
    {
        return Attributes(path, kSheet, "mergeCell", "ref");
    }
};

TEST_F(WorkbookMerges, MergedTitleReplacesTheTitleOfItsFirstCell)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "title");
    book->MergeCells(0, 0, 0, 5, "merged", nullptr);
    book.Text(1, 0, "header");
    book->Close();
    EXPECT_THAT(Merges(book.path()), ElementsAre("A1:F1"));
    EXPECT_THAT(CellsOf(book.path()), ElementsAre(Pair("A1", "merged"), Pair("A2", "header")));
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookMerges, MergeOverSeveralTitleRowsKeepsTheTitlesBehindIt)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "one");
    book->MergeCells(0, 1, 2, 3, "logo", std::make_shared<Clxw_format_>());
    book.Text(1, 0, "two");
    book.Text(2, 0, "three");
    book->MergeCells(2, 0, 2, 0, "three", nullptr);
    book.Text(3, 0, "header");
    book.Text(4, 0, "row");
    book->Close();
    EXPECT_THAT(Merges(book.path()), ElementsAre("B1:D3"));
    EXPECT_THAT(CellsOf(book.path()),
                ElementsAre(Pair("A1", "one"), Pair("A2", "two"), Pair("A3", "three"), Pair("A4", "header"),
                            Pair("A5", "row"), Pair("B1", "logo")));
    EXPECT_THAT(Errors(), IsEmpty());
    EXPECT_EQ(AskOpenpyxl(book.path(), "print(book.active.merged_cells, book.active['B1'].value)"),
              "B1:D3 logo");
}

TEST_F(WorkbookMerges, MergeOfManyRowsDoesNotMoveTheUsedRow)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book->MergeCells(0, 0, 4, 1, "m", nullptr);
    EXPECT_EQ(book->GetUsedRowsCount(), 0);
}

TEST_F(WorkbookMerges, MergeOfOneCellIsAPlainCell)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book->MergeCells(0, 2, 0, 2, "alone", nullptr);
    book->Close();
    EXPECT_THAT(Merges(book.path()), IsEmpty());
    EXPECT_THAT(CellsOf(book.path()), ElementsAre(Pair("C1", "alone")));
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookMerges, RepeatedMergeIsOneRangeWithTheLastText)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book->MergeCells(0, 0, 0, 3, "first", nullptr);
    book->MergeCells(0, 0, 0, 3, "second", nullptr);
    book->Close();
    EXPECT_THAT(Merges(book.path()), ElementsAre("A1:D1"));
    EXPECT_THAT(CellsOf(book.path()), ElementsAre(Pair("A1", "second")));
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookMerges, OverlappingMergeStaysApartAndIsTold)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book->MergeCells(0, 0, 1, 3, "first", nullptr);
    book->MergeCells(1, 2, 2, 5, "second", nullptr);
    book->Close();
    EXPECT_THAT(Merges(book.path()), ElementsAre("A1:D2"));
    EXPECT_THAT(CellsOf(book.path()), ElementsAre(Pair("A1", "first"), Pair("C2", "second")));
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("the range from C2 to F3 overlaps a merged one")));
}

TEST_F(WorkbookMerges, CornersMayComeInAnyOrder)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book->MergeCells(1, 3, 0, 0, "m", nullptr);
    book->Close();
    EXPECT_THAT(Merges(book.path()), ElementsAre("A1:D2"));
}

TEST_F(WorkbookMerges, CellsOfTheFirstRowThatHoldTextKeepIt)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 2, "kept");
    book->MergeCells(0, 0, 0, 3, "m", std::make_shared<Clxw_format_>());
    book->Close();
    EXPECT_THAT(CellsOf(book.path()), ElementsAre(Pair("A1", "m"), Pair("C1", "kept")));
    EXPECT_THAT(Attributes(book.path(), kSheet, "c", "r"), ElementsAre("A1", "B1", "C1", "D1"));
}

TEST_F(WorkbookMerges, MergeBehindTheCurrentRowLosesItsTextAndSaysSo)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "title");
    book.Text(1, 0, "row");
    book->MergeCells(0, 0, 0, 3, "late", nullptr);
    book->Close();
    EXPECT_THAT(Merges(book.path()), ElementsAre("A1:D1"));
    EXPECT_EQ(CellsOf(book.path())["A1"], "title");
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("the text of cell A1 is lost")));
}

TEST_F(WorkbookMerges, MergeDownToTheLastRowOfTheFormatIsQuick)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book->MergeCells(0, 0, 1048575, 16383, "all", std::make_shared<Clxw_format_>());
    book.Text(1, 0, "kept");
    book->Close();
    EXPECT_THAT(Merges(book.path()), ElementsAre("A1:XFD1048576"));
    EXPECT_THAT(CellsOf(book.path()), ElementsAre(Pair("A1", "all"), Pair("A2", "kept")));
}

}  // namespace
