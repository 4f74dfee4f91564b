#include "OfficeTest.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

// The real limit of rows, which takes a million of them.
class WorkbookBoundary : public OfficeTest
{
protected:
    void Write(int rows)
    {
        Book book(Report("r.xlsx"));
        book->AddSheetByName("Alarms");
        for (int row = 0; row < rows; ++row)
            book.Text(row, 0, std::to_string(row));
        EXPECT_EQ(book->GetUsedRowsCount(), rows - 1);
        book->Close();
    }

    // The last row of a sheet, from the end of its XML.
    std::string LastCell(int sheet) const
    {
        const std::string xml =
            Member(Report("r.xlsx"), "xl/worksheets/sheet" + std::to_string(sheet) + ".xml");
        const std::size_t begin = xml.rfind("<c r=\"") + 6;
        return xml.substr(begin, xml.find('"', begin) - begin);
    }
};

TEST_F(WorkbookBoundary, Row1048575Fits)
{
    Write(1048575);
    EXPECT_THAT(SheetNamesOf(Report("r.xlsx")), ElementsAre("Alarms"));
    EXPECT_EQ(LastCell(1), "A1048575");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookBoundary, Row1048576IsTheLastOfItsSheet)
{
    Write(1048576);
    EXPECT_THAT(SheetNamesOf(Report("r.xlsx")), ElementsAre("Alarms"));
    EXPECT_EQ(LastCell(1), "A1048576");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookBoundary, Row1048577IsTheFirstOfTheNextSheet)
{
    Write(1048577);
    EXPECT_THAT(SheetNamesOf(Report("r.xlsx")), ElementsAre("Alarms", "Alarms (2)"));
    EXPECT_EQ(LastCell(1), "A1048576");
    EXPECT_THAT(CellsOf(Report("r.xlsx"), 2), ElementsAre(::testing::Pair("A1", "1048576")));
}

}  // namespace
