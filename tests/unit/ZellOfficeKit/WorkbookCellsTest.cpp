#include "OfficeTest.h"

#include <xlsxwriter.h>

#include <string>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ZellOfficeKit::Clxw_format_;

namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD";

class WorkbookCells : public OfficeTest
{
protected:
    // The text of A1 as it stands in the sheet's XML after parsing.
    std::string Written(const std::string& text)
    {
        Book book(Report("r.xlsx"));
        book->AddSheetByName("Alarms");
        book.Text(0, 0, text);
        book->Close();
        return CellsOf(book.path())["A1"];
    }
};

TEST_F(WorkbookCells, TitlesHeadersAndRowsStandWhereTheyWereWritten)
{
    Book book(Report("r.xlsx"));
    ASSERT_TRUE(book->AddSheetByName("Alarms"));
    book.Text(0, 0, "Title");
    book.Text(1, 0, "Time");
    book.Text(1, 1, "Camera");
    book.Text(2, 0, "12:00");
    book.Text(2, 1, "Gate");
    book->Close();
    EXPECT_THAT(CellsOf(book.path()),
                ElementsAre(Pair("A1", "Title"), Pair("A2", "Time"), Pair("A3", "12:00"),
                            Pair("B2", "Camera"), Pair("B3", "Gate")));
    EXPECT_THAT(Errors(), IsEmpty());
}

// What comes to the row file is what the library itself would write, byte for byte.
TEST_F(WorkbookCells, RowsAreThoseOfTheLibrary)
{
    const std::string own = Report("own.xlsx");
    const std::string library = Report("library.xlsx");
    const char* texts[] = {"plain",
                           "a & b < c > d \"e\" 'f'",
                           " outer",
                           "outer\t",
                           "two\nlines",
                           "\a bell",
                           "r\r",
                           "",
                           "_x",
                           "t_xt_underscores_",
                           "\xC3\xA4 \xF0\x9F\x93\xB7"};
    Book book(own);
    book->AddSheetByName("Alarms");
    lxw_workbook_options options = {LXW_TRUE, nullptr, LXW_FALSE};
    lxw_workbook* workbook = workbook_new_opt(library.c_str(), &options);
    lxw_worksheet* sheet = workbook_add_worksheet(workbook, "Alarms");
    lxw_format* bold = workbook_add_format(workbook);
    format_set_bold(bold);
    format_set_align(bold, LXW_ALIGN_LEFT);
    auto format = std::make_shared<Clxw_format_>();
    format->SetVal_is_blod(true);
    int row = 3;
    for (const char* text : texts) {
        for (const int col : {0, 1, 25, 26, 27, 701, 702, 16383}) {
            book->SetCellString(row, col, text, col % 2 == 0 ? format : nullptr);
            worksheet_write_string(sheet, static_cast<lxw_row_t>(row), static_cast<lxw_col_t>(col), text,
                                   col % 2 == 0 ? bold : nullptr);
        }
        book->SetRowHeightWithPixels(row, row * 7);
        worksheet_set_row_pixels(sheet, static_cast<lxw_row_t>(row), static_cast<std::uint32_t>(row * 7),
                                 nullptr);
        row += 2;
    }
    book->SetRowHeightWithPixels(row, 33);
    worksheet_set_row_pixels(sheet, static_cast<lxw_row_t>(row), 33, nullptr);
    book->Close();
    ASSERT_EQ(workbook_close(workbook), LXW_NO_ERROR);
    EXPECT_EQ(Member(own, "xl/worksheets/sheet1.xml"), Member(library, "xl/worksheets/sheet1.xml"));
    EXPECT_EQ(Member(own, "xl/styles.xml"), Member(library, "xl/styles.xml"));
}

TEST_F(WorkbookCells, CellsOfARowMayComeInAnyOrder)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 2, "C");
    book.Text(0, 0, "A");
    book.Text(0, 1, "B");
    book->Close();
    EXPECT_THAT(Attributes(book.path(), "xl/worksheets/sheet1.xml", "c", "r"), ElementsAre("A1", "B1", "C1"));
    EXPECT_THAT(CellsOf(book.path()), ElementsAre(Pair("A1", "A"), Pair("B1", "B"), Pair("C1", "C")));
}

TEST_F(WorkbookCells, LastTextOfACellCounts)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 1, "old B");
    book.Text(0, 0, "old A");
    book.Text(0, 1, "new B");
    book.Text(0, 0, "new A");
    book.Text(1, 0, "old");
    book.Text(1, 0, "new");
    book->Close();
    EXPECT_THAT(CellsOf(book.path()),
                ElementsAre(Pair("A1", "new A"), Pair("A2", "new"), Pair("B1", "new B")));
}

TEST_F(WorkbookCells, CellBehindTheCurrentRowIsTold)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(5, 0, "row 5");
    book.Text(2, 1, "behind");
    book->Close();
    EXPECT_THAT(Errors(),
                ElementsAre(HasSubstr(
                    "sheet Alarms: the text of cell B3 is lost: its row has been written already")));
    EXPECT_THAT(CellsOf(book.path()), ElementsAre(Pair("A6", "row 5")));
}

TEST_F(WorkbookCells, NegativeRowOrColumnIsTold)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(-1, 0, "x");
    book.Text(0, -1, "x");
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("there is no row -1, column 0"),
                                      HasSubstr("there is no row 0, column -1")));
}

TEST_F(WorkbookCells, CellWithoutASheetIsTold)
{
    Book book(Report("r.xlsx"));
    book.Text(0, 0, "x");
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("there is no sheet to write to")));
}

TEST_F(WorkbookCells, SheetsAreReturnedToByName)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "a0");
    book->AddSheetByName("Doors");
    book.Text(0, 0, "d0");
    ASSERT_TRUE(book->AddSheetByName("Alarms"));
    EXPECT_EQ(book->GetUsedRowsCount(), 0);
    book.Text(1, 0, "a1");
    book->Close();
    EXPECT_THAT(SheetNamesOf(book.path()), ElementsAre("Alarms", "Doors"));
    EXPECT_THAT(CellsOf(book.path(), 1), ElementsAre(Pair("A1", "a0"), Pair("A2", "a1")));
    EXPECT_THAT(CellsOf(book.path(), 2), ElementsAre(Pair("A1", "d0")));
}

TEST_F(WorkbookCells, UsedRowIsTheLastOneTouchedByCellHeightOrPicture)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    EXPECT_EQ(book->GetUsedRowsCount(), 0);
    book.Text(3, 0, "x");
    EXPECT_EQ(book->GetUsedRowsCount(), 3);
    book->SetRowHeightWithPixels(4, 40);
    EXPECT_EQ(book->GetUsedRowsCount(), 4);
    book->SetColumnPicsBufferOpt(6, 0, PngBytes(10, 10), nullptr);
    EXPECT_EQ(book->GetUsedRowsCount(), 6);
    book.Link(7, 0, "http://h/", "t");
    EXPECT_EQ(book->GetUsedRowsCount(), 7);
    book->SetCellString(8, 0, "", nullptr);
    EXPECT_EQ(book->GetUsedRowsCount(), 8);
    book->SetColumnPicsBufferOpt(9, 0, "", nullptr);
    book->SetRowHeightWithPixels(9, 0);
    book->SetCellValidCheck(9, 0, "a,b");
    EXPECT_EQ(book->GetUsedRowsCount(), 8);
}

TEST_F(WorkbookCells, SheetNamesThatTheFormatRefusesAreMapped)
{
    Book book(Report("r.xlsx"));
    for (const char* name : {"a/b", "A_B", "", "History", "'q'"}) {
        ASSERT_TRUE(book->AddSheetByName(name)) << name;
        book.Text(0, 0, name);
    }
    ASSERT_TRUE(book->AddSheetByName("a/b"));
    book.Text(1, 0, "again");
    book->Close();
    EXPECT_THAT(SheetNamesOf(book.path()), ElementsAre("a_b", "A_B (2)", "Sheet", "History_", "_q_"));
    EXPECT_THAT(CellsOf(book.path(), 1), ElementsAre(Pair("A1", "a/b"), Pair("A2", "again")));
    EXPECT_THAT(Errors()[0], HasSubstr("the sheet named \"a/b\" is called \"a_b\" in the workbook"));
    EXPECT_EQ(Errors().size(), 5U);
}

TEST_F(WorkbookCells, MarkupLettersAreText)
{
    EXPECT_EQ(Written("<a href=\"x\">&amp;</a>"), "<a href=\"x\">&amp;</a>");
}

TEST_F(WorkbookCells, InvalidUtf8BecomesReplacementCharacters)
{
    EXPECT_EQ(Written("a\xFF z"), std::string("a") + kReplacement + " z");
    EXPECT_EQ(Written("\xED\xA0\x80"), std::string(kReplacement) + kReplacement + kReplacement);
    EXPECT_EQ(Written("\xC0\xAF"), std::string(kReplacement) + kReplacement);
    EXPECT_EQ(Written("\xF4\x90\x80\x80").substr(0, 3), kReplacement);
    EXPECT_EQ(Written("cut \xE4\xB8"), std::string("cut ") + kReplacement);
}

TEST_F(WorkbookCells, CodePointsThatXmlForbidsAreReplaced)
{
    EXPECT_EQ(Written("a\xEF\xBF\xBE\xEF\xBF\xBF"), std::string("a") + kReplacement + kReplacement);
}

TEST_F(WorkbookCells, TextBehindAZeroByteIsKept)
{
    EXPECT_EQ(Written(std::string("a\0b", 3)), std::string("a") + kReplacement + "b");
}

TEST_F(WorkbookCells, ControlCharactersAreEscaped)
{
    EXPECT_EQ(Written("a\x01\x1F\r"), "a_x0001__x001F__x000D_");
    EXPECT_EQ(Written("tab\tand\nline"), "tab\tand\nline");
}

TEST_F(WorkbookCells, TextThatLooksLikeAnEscapeIsEscaped)
{
    EXPECT_EQ(Written("_x0041_"), "_x005F_x0041_");
    EXPECT_EQ(Written("__x00e4_"), "__x005F_x00e4_");
    EXPECT_EQ(Written("_x004_ _x0041 _X0041_ _xg041_"), "_x004_ _x0041 _X0041_ _xg041_");
}

TEST_F(WorkbookCells, OtherScriptsAndEmojiAreReadBack)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("\xE6\x8A\xA5\xE8\xAD\xA6");
    book.Text(0, 0, "\xD8\xA8\xD9\x88\xD8\xA7\xD8\xA8\xD8\xA9 \xF0\x9F\x93\xB7");
    book->Close();
    EXPECT_EQ(AskOpenpyxl(book.path(), "print(ascii(book.active.title), ascii(book.active['A1'].value))"),
              "'\\u62a5\\u8b66' '\\u0628\\u0648\\u0627\\u0628\\u0629 \\U0001f4f7'");
}

}  // namespace
