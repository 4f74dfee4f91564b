#include "OfficeTest.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;
using ZellOfficeKit::OfficeLimits;

namespace {

constexpr char kSheet[] = "xl/worksheets/sheet1.xml";
constexpr char kEmoji[] = "\xF0\x9F\x93\xB7";

class WorkbookLimits : public OfficeTest
{
protected:
    void LowerRows(int rows)
    {
        OfficeLimits limits;
        limits.rows = rows;
        Lower(limits);
    }

    std::string Written(const std::string& text)
    {
        Book book(Report("r.xlsx"));
        book->AddSheetByName("Alarms");
        book.Text(0, 0, text);
        book->Close();
        return CellsOf(book.path())["A1"];
    }
};

TEST_F(WorkbookLimits, TextOf32767CharactersStays)
{
    for (const std::size_t size : {32766U, 32767U})
        EXPECT_EQ(Written(std::string(size, 'x')).size(), size);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookLimits, TextOf32768CharactersIsCutAndTold)
{
    EXPECT_EQ(Written(std::string(32768, 'x')), std::string(32767, 'x'));
    EXPECT_THAT(Errors(),
                ElementsAre(HasSubstr("the text of cell A1 has 32768 bytes and is cut at 32767 characters")));
}

TEST_F(WorkbookLimits, CharactersOfSeveralBytesCountOnce)
{
    std::string text;
    for (int i = 0; i < 32767; ++i)
        text += "\xE4\xB8\xAD";
    EXPECT_EQ(Written(text), text);
    EXPECT_EQ(Written(text + "\xE4\xB8\xAD"), text);
}

TEST_F(WorkbookLimits, EmojiCountTwiceAndAreNeverHalved)
{
    EXPECT_EQ(Written(std::string(32765, 'x') + kEmoji), std::string(32765, 'x') + kEmoji);
    EXPECT_EQ(Written(std::string(32766, 'x') + kEmoji), std::string(32766, 'x'));
}

TEST_F(WorkbookLimits, EscapesCountAsTheCharactersTheyStandFor)
{
    std::string text;
    for (int i = 0; i < 4681; ++i)
        text += "_x0041_";
    EXPECT_EQ(text.size(), 32767U);
    EXPECT_EQ(Written(text).size(), 4681U * 13U);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookLimits, TextOfTenMegabytesIsCut)
{
    EXPECT_EQ(Written(std::string(10 * 1024 * 1024, 'x')).size(), 32767U);
    EXPECT_THAT(Errors(), SizeIs(1));
}

TEST_F(WorkbookLimits, Column16384IsTheLast)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 16390; ++col)
            book.Text(row, col, "x");
    }
    book->SetColumnWidth(16380, 16400, 9);
    book->Close();
    const std::vector<std::string> cells = Attributes(book.path(), kSheet, "c", "r");
    EXPECT_EQ(cells.size(), 3U * 16384U);
    EXPECT_EQ(cells.back(), "XFD3");
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("column 16384 and all behind column 16383 are lost")));
}

TEST_F(WorkbookLimits, MergeBeyondTheLastColumnEndsThere)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book->MergeCells(0, 0, 0, 20000, "m", nullptr);
    book->Close();
    EXPECT_THAT(Attributes(book.path(), kSheet, "mergeCell", "ref"), ElementsAre("A1:XFD1"));
    EXPECT_THAT(Errors(), SizeIs(1));
}

TEST_F(WorkbookLimits, RowsBeyondTheLimitGoOnInAFurtherSheet)
{
    LowerRows(3);
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    for (int row = 0; row < 7; ++row) {
        book.Text(row, 0, "row " + std::to_string(row));
        EXPECT_EQ(book->GetUsedRowsCount(), row);
    }
    book->Close();
    EXPECT_THAT(SheetNamesOf(book.path()), ElementsAre("Alarms", "Alarms (2)", "Alarms (3)"));
    EXPECT_THAT(CellsOf(book.path(), 1),
                ElementsAre(Pair("A1", "row 0"), Pair("A2", "row 1"), Pair("A3", "row 2")));
    EXPECT_THAT(CellsOf(book.path(), 2),
                ElementsAre(Pair("A1", "row 3"), Pair("A2", "row 4"), Pair("A3", "row 5")));
    EXPECT_THAT(CellsOf(book.path(), 3), ElementsAre(Pair("A1", "row 6")));
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("sheet Alarms: rows from 3 go on in sheet Alarms (2)"),
                                      HasSubstr("sheet Alarms: rows from 6 go on in sheet Alarms (3)")));
}

TEST_F(WorkbookLimits, LaterPagesReturnToTheSheetThatGoesOn)
{
    LowerRows(2);
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    for (int row = 0; row < 3; ++row)
        book.Text(row, 0, "a");
    book->AddSheetByName("Doors");
    book.Text(0, 0, "d");
    ASSERT_TRUE(book->AddSheetByName("Alarms"));
    EXPECT_EQ(book->GetUsedRowsCount(), 2);
    book.Text(3, 0, "next");
    book->Close();
    EXPECT_THAT(SheetNamesOf(book.path()), ElementsAre("Alarms", "Alarms (2)", "Doors"));
    EXPECT_THAT(CellsOf(book.path(), 2), ElementsAre(Pair("A1", "a"), Pair("A2", "next")));
}

TEST_F(WorkbookLimits, SheetThatGoesOnHasANameOfItsOwn)
{
    LowerRows(1);
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms (2)");
    book.Text(0, 0, "its own");
    const std::string longest(31, 'n');
    for (const std::string& name : {std::string("Alarms"), longest}) {
        book->AddSheetByName(name);
        book.Text(0, 0, "0");
        book.Text(1, 0, "1");
    }
    book->Close();
    EXPECT_THAT(SheetNamesOf(book.path()),
                ElementsAre("Alarms (2)", "Alarms", "Alarms (3)", longest, std::string(27, 'n') + " (2)"));
}

TEST_F(WorkbookLimits, EverythingOfARowGoesToItsSheet)
{
    LowerRows(2);
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "0");
    book->MergeCells(2, 0, 2, 1, "m", nullptr);
    book->SetRowHeightWithPixels(3, 40);
    book.Link(3, 0, "http://h/", "l");
    book->SetColumnPicsBufferOpt(3, 1, PngBytes(9, 9), nullptr);
    book->SetCellValidCheck(3, 2, "a,b");
    book->SetColumnWidthtWithPixels(1, 1, 100);
    book->Close();
    constexpr char kSecond[] = "xl/worksheets/sheet2.xml";
    EXPECT_THAT(Attributes(book.path(), kSecond, "mergeCell", "ref"), ElementsAre("A1:B1"));
    EXPECT_THAT(Attributes(book.path(), kSecond, "row", "ht"), ElementsAre("", "30"));
    EXPECT_THAT(Attributes(book.path(), kSecond, "hyperlink", "ref"), ElementsAre("A2"));
    EXPECT_THAT(Attributes(book.path(), kSecond, "drawing", "r:id"), SizeIs(1));
    EXPECT_THAT(Attributes(book.path(), kSecond, "dataValidation", "sqref"), ElementsAre("C2"));
    // The width holds for each of its sheets.
    EXPECT_THAT(Attributes(book.path(), kSheet, "col", "width"), ElementsAre("14.28515625"));
    EXPECT_THAT(Attributes(book.path(), kSecond, "col", "width"), ElementsAre("14.28515625"));
}

TEST_F(WorkbookLimits, MergeEndsWithTheLastRowOfItsSheet)
{
    LowerRows(3);
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book->MergeCells(1, 0, 5, 1, "m", nullptr);
    book->Close();
    EXPECT_THAT(Attributes(book.path(), kSheet, "mergeCell", "ref"), ElementsAre("A2:B3"));
    EXPECT_THAT(
        Errors(),
        ElementsAre(HasSubstr("the merged range from row 1 ends with the last row of its worksheet")));
}

TEST_F(WorkbookLimits, LinksBeyondTheLimitAreTextsAndToldOnce)
{
    OfficeLimits limits;
    limits.links = 2;
    Lower(limits);
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    for (int row = 0; row < 5; ++row)
        book.Link(row, 0, "http://h/" + std::to_string(row), "t" + std::to_string(row));
    book->Close();
    EXPECT_THAT(Attributes(book.path(), kSheet, "hyperlink", "ref"), ElementsAre("A1", "A2"));
    EXPECT_THAT(CellsOf(book.path()), SizeIs(5));
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("more than 2 links, from cell A3 on only their texts stay")));
}

TEST_F(WorkbookLimits, Link65530IsTheLast)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    for (int row = 0; row < 65531; ++row)
        book.Link(row, 0, "http://h/" + std::to_string(row), "t");
    book->Close();
    const std::vector<std::string> links = Attributes(book.path(), kSheet, "hyperlink", "ref");
    ASSERT_EQ(links.size(), 65530U);
    EXPECT_EQ(links.back(), "A65530");
    EXPECT_EQ(CellsOf(book.path()).count("A65531"), 1U);
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("more than 65530 links, from cell A65531 on")));
}

TEST_F(WorkbookLimits, LimitsAreNeverRaisedAboveTheFormats)
{
    OfficeLimits limits;
    limits.rows = 2000000;
    limits.columns = 20000;
    limits.links = 70000;
    limits.text_units = 40000;
    Lower(limits);
    const OfficeLimits now = ZellOfficeKit::CurrentOfficeLimits();
    EXPECT_EQ(now.rows, 1048576);
    EXPECT_EQ(now.columns, 16384);
    EXPECT_EQ(now.links, 65530);
    EXPECT_EQ(now.text_units, 32767);
}

}  // namespace
