#include "OfficeTest.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ZellOfficeKit::Clxw_format_;

namespace {

class WorkbookFormats : public OfficeTest
{
protected:
    WorkbookFormats() : book_(Report("r.xlsx")) { book_->AddSheetByName("Alarms"); }

    // What openpyxl says about A1 when it was written with the format.
    std::string Ask(const Clxw_format_& format, const std::string& what)
    {
        book_->SetCellString(0, 0, "x", std::make_shared<Clxw_format_>(format));
        book_->Close();
        return AskOpenpyxl(book_.path(), "cell = book.active['A1']\nprint(" + what + ")");
    }

    std::string FillOf(const std::string& color)
    {
        Clxw_format_ format;
        format.SetVal_background_color(color);
        return Ask(format, "cell.fill.fill_type, cell.fill.fgColor.rgb");
    }

    Book book_;
};

TEST_F(WorkbookFormats, BoldSizeColorAndWrapReachTheCell)
{
    Clxw_format_ format;
    format.SetVal_is_blod(true);
    format.SetVal_font_size(14);
    format.SetVal_text_color("#C00000");
    format.SetVal_is_need_wrap(true);
    EXPECT_EQ(Ask(format, "cell.font.b, cell.font.sz, cell.font.color.rgb, cell.alignment.wrap_text"),
              "True 14.0 FFC00000 True");
}

TEST_F(WorkbookFormats, LocationsAreLeftCentreAndRight)
{
    for (int location = -1; location < 4; ++location) {
        auto format = std::make_shared<Clxw_format_>();
        format->SetVal_text_location(location);
        book_->SetCellString(0, location + 1, "x", format);
    }
    book_->Close();
    EXPECT_EQ(AskOpenpyxl(book_.path(), "print([cell.alignment.horizontal for cell in book.active[1]])"),
              "[None, 'left', 'center', 'right', None]");
}

TEST_F(WorkbookFormats, SizeOfZeroIsTheDefault)
{
    EXPECT_EQ(Ask(Clxw_format_(), "cell.font.sz"), "11.0");
}

TEST_F(WorkbookFormats, SizeAboveTheFormatsIsBroughtDown)
{
    Clxw_format_ format;
    format.SetVal_font_size(5000);
    EXPECT_EQ(Ask(format, "cell.font.sz"), "409.0");
}

TEST_F(WorkbookFormats, BackgroundIsASolidFill)
{
    EXPECT_EQ(FillOf("#DDEBF7"), "solid FFDDEBF7");
}

TEST_F(WorkbookFormats, BackgroundNeedsNoHash)
{
    EXPECT_EQ(FillOf("ddebf7"), "solid FFDDEBF7");
}

TEST_F(WorkbookFormats, BlackIsAColor)
{
    EXPECT_EQ(FillOf("#000000"), "solid FF000000");
}

TEST_F(WorkbookFormats, NamesOfColorsAreKnownInAnyCase)
{
    EXPECT_EQ(FillOf("Orange"), "solid FFFF6600");
}

TEST_F(WorkbookFormats, OtherTextsAreNoColor)
{
    EXPECT_EQ(FillOf("#12345G"), "None 00000000");
}

TEST_F(WorkbookFormats, ShortOrLongNumbersAreNoColor)
{
    EXPECT_EQ(FillOf("#FFF"), "None 00000000");
}

TEST_F(WorkbookFormats, EqualFormatsShareOne)
{
    for (int row = 0; row < 100; ++row) {
        for (int kind = 0; kind < 12; ++kind) {
            auto format = std::make_shared<Clxw_format_>();
            format->SetVal_font_size(8 + kind);
            book_->SetCellString(row, kind, "x", format);
        }
    }
    book_->Close();
    // One for cells without a format, one for links, and the twelve.
    EXPECT_THAT(Attributes(book_.path(), "xl/styles.xml", "cellXfs/xf", "fontId"), SizeIs(::testing::Le(14)));
    EXPECT_EQ(AskOpenpyxl(book_.path(), "print([cell.font.sz for cell in book.active[100]])"),
              "[8.0, 9.0, 10.0, 11.0, 12.0, 13.0, 14.0, 15.0, 16.0, 17.0, 18.0, 19.0]");
}

TEST_F(WorkbookFormats, ColumnWidthsAreInCharactersOrPixels)
{
    book_->SetColumnWidth(0, 1, 20);
    book_->SetColumnWidthtWithPixels(3, 3, 100);
    book_.Text(0, 0, "x");
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), "xl/worksheets/sheet1.xml", "col", "min"),
                ElementsAre("1", "2", "4"));
    EXPECT_THAT(Attributes(book_.path(), "xl/worksheets/sheet1.xml", "col", "width"),
                ElementsAre("20.7109375", "20.7109375", "14.28515625"));
}

TEST_F(WorkbookFormats, WidthsMayComeAfterTheRows)
{
    book_.Text(100, 0, "x");
    book_->SetColumnWidthtWithPixels(0, 0, 100);
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), "xl/worksheets/sheet1.xml", "col", "width"),
                ElementsAre("14.28515625"));
}

TEST_F(WorkbookFormats, ZeroPixelsHideNothing)
{
    book_->SetColumnWidthtWithPixels(0, 0, 0);
    book_->SetColumnWidthtWithPixels(1, 1, -5);
    book_->SetColumnWidth(2, 2, 0);
    book_->SetRowHeightWithPixels(0, 0);
    book_->SetRowHeightWithPixels(0, -3);
    book_.Text(0, 0, "x");
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), "xl/worksheets/sheet1.xml", "col", "width"), IsEmpty());
    EXPECT_THAT(Attributes(book_.path(), "xl/worksheets/sheet1.xml", "row", "ht"), ElementsAre(""));
}

TEST_F(WorkbookFormats, RowHeightMayComeBeforeAndAfterTheCellsOfTheRow)
{
    book_->SetRowHeightWithPixels(0, 40);
    book_.Text(0, 0, "x");
    book_.Text(1, 0, "y");
    book_->SetRowHeightWithPixels(1, 41);
    book_->SetRowHeightWithPixels(1, 90);
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), "xl/worksheets/sheet1.xml", "row", "ht"), ElementsAre("30", "67.5"));
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookFormats, HeightOfARowThatHasGoneIsTold)
{
    book_.Text(3, 0, "x");
    book_->SetRowHeightWithPixels(1, 40);
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("the height of the row of cell A2 is lost")));
}

TEST_F(WorkbookFormats, RowHigherThanTheFormatAllowsIsBroughtDown)
{
    book_->SetRowHeightWithPixels(0, 2000);
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), "xl/worksheets/sheet1.xml", "row", "ht"), ElementsAre("409.5"));
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("row 1 can't be 2000 pixels high")));
}

}  // namespace
