#include "OfficeTest.h"

#include <numeric>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;
using ZellOfficeKit::Clxw_image_options_;

namespace {

constexpr char kSheet[] = "xl/worksheets/sheet1.xml";
constexpr char kRels[] = "xl/worksheets/_rels/sheet1.xml.rels";

// Pictures, links and lists.
class WorkbookParts : public OfficeTest
{
protected:
    WorkbookParts() : book_(Report("r.xlsx")) { book_->AddSheetByName("Alarms"); }

    void Picture(int row, int col, const std::string& bytes, double x_scale, double y_scale)
    {
        auto options = std::make_shared<Clxw_image_options_>();
        options->SetVal_x_scale(x_scale);
        options->SetVal_y_scale(y_scale);
        options->SetVal_object_position(1);
        book_->SetColumnPicsBufferOpt(row, col, bytes, options);
    }

    std::string Anchor(const std::string& corner, const std::string& child)
    {
        const auto drawing = Xml(book_.path(), "xl/drawings/drawing1.xml");
        return drawing->select_node(("//xdr:" + corner + "/xdr:" + child).c_str()).node().text().get();
    }

    std::vector<std::string> Targets() { return Attributes(book_.path(), kRels, "Relationship", "Target"); }

    Book book_;
};

TEST_F(WorkbookParts, PictureLiesInItsCell)
{
    const std::string bytes = PngBytes(100, 75);
    Picture(3, 2, bytes, 1.0, 0.3);
    book_->Close();
    EXPECT_EQ(Anchor("from", "row"), "3");
    EXPECT_EQ(Anchor("from", "col"), "2");
    EXPECT_EQ(Member(book_.path(), "xl/media/image1.png"), bytes);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookParts, PictureScaleOfZeroCountsAsOne)
{
    Picture(0, 0, PngBytes(150, 20), 0, 1.0);
    book_->Close();
    // Columns have 64 pixels: the picture keeps its width.
    EXPECT_EQ(Anchor("to", "col"), "2");
}

TEST_F(WorkbookParts, PictureMovesAndSizesWithItsCell)
{
    Picture(0, 0, PngBytes(20, 20), 1.0, 1.0);
    book_->Close();
    const auto drawing = Xml(book_.path(), "xl/drawings/drawing1.xml");
    // Position 1 is what readers do without being told.
    EXPECT_STREQ(drawing->select_node("//xdr:twoCellAnchor").node().attribute("editAs").value(), "");
}

TEST_F(WorkbookParts, PictureMayBelongToARowThatHasGone)
{
    book_.Text(9, 0, "x");
    Picture(2, 0, PngBytes(20, 20), 1.0, 1.0);
    book_->Close();
    EXPECT_EQ(Anchor("from", "row"), "2");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookParts, EmptyPictureIsIgnored)
{
    Picture(0, 0, "", 1.0, 1.0);
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), kSheet, "drawing", "r:id"), IsEmpty());
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookParts, PictureThatIsNoneIsToldAndLeavesTheCellBlank)
{
    Picture(0, 1, "this is no picture at all", 1.0, 1.0);
    Picture(1, 1, PngBytes(30, 30).substr(0, 12), 1.0, 1.0);
    book_.Text(2, 0, "goes on");
    book_->Close();
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("the picture of cell B1 is lost"),
                                      HasSubstr("the picture of cell B2 is lost")));
    EXPECT_THAT(Attributes(book_.path(), kSheet, "drawing", "r:id"), IsEmpty());
    EXPECT_EQ(CellsOf(book_.path())["A3"], "goes on");
}

TEST_F(WorkbookParts, LinkShowsItsTextAndLeadsToItsTarget)
{
    book_.Link(0, 1, "/out/a b#1.jpg", "first");
    book_.Link(1, 1, "http://h/p?q=1", "second");
    book_->Close();
    EXPECT_THAT(CellsOf(book_.path()), ElementsAre(Pair("B1", "first"), Pair("B2", "second")));
    EXPECT_THAT(Targets(), ElementsAre("file:///out/a%20b%231.jpg", "http://h/p?q=1"));
    EXPECT_EQ(
        AskOpenpyxl(book_.path(), "print(book.active['B1'].hyperlink.target, book.active['B1'].font.u)"),
        "file:///out/a%20b%231.jpg single");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookParts, LinksAndTextsOfARowStandTogetherInOrder)
{
    book_.Text(0, 0, "a");
    book_.Link(0, 1, "http://h/", "b");
    book_.Text(0, 2, "c");
    book_.Link(1, 1, "http://h/", "d");
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), kSheet, "row", "r"), ElementsAre("1", "2"));
    EXPECT_THAT(Attributes(book_.path(), kSheet, "c", "r"), ElementsAre("A1", "B1", "C1", "B2"));
}

TEST_F(WorkbookParts, LinkWithoutATextShowsItsTarget)
{
    book_.Link(0, 0, "http://h/a b", "");
    book_->Close();
    EXPECT_THAT(CellsOf(book_.path()), ElementsAre(Pair("A1", "http://h/a b")));
}

TEST_F(WorkbookParts, LinkWithoutATargetIsItsText)
{
    book_.Link(0, 0, "", "text");
    book_->Close();
    EXPECT_THAT(CellsOf(book_.path()), ElementsAre(Pair("A1", "text")));
    EXPECT_THAT(Attributes(book_.path(), kSheet, "hyperlink", "ref"), IsEmpty());
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookParts, LinkBehindTheCurrentRowIsTold)
{
    book_.Text(4, 0, "x");
    book_.Link(1, 0, "http://h/", "lost");
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), kSheet, "hyperlink", "ref"), IsEmpty());
    EXPECT_THAT(Errors(),
                ElementsAre(HasSubstr("the link of cell A2 is lost: its row has been written already")));
}

TEST_F(WorkbookParts, LinkOf2080CharactersIsPlainText)
{
    const std::string longest = "http://h/" + std::string(2070, 'x');
    book_.Link(0, 0, longest, "link");
    book_.Link(1, 0, longest + "x", "text");
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), kSheet, "hyperlink", "ref"), ElementsAre("A1"));
    EXPECT_THAT(CellsOf(book_.path()), ElementsAre(Pair("A1", "link"), Pair("A2", "text")));
    EXPECT_THAT(
        Errors(),
        ElementsAre(HasSubstr("the link of cell A2 is no address that a workbook takes, its text stays")));
}

TEST_F(WorkbookParts, TextsOfLinksAreMadeFitLikeAllTexts)
{
    book_.Link(0, 0, "http://h/", "bad \xFF & _x0041_");
    book_->Close();
    EXPECT_EQ(CellsOf(book_.path())["A1"], "bad \xEF\xBF\xBD & _x005F_x0041_");
}

TEST_F(WorkbookParts, ListOffersItsEntries)
{
    book_->SetCellValidCheck(2, 1, "open, closed\n\n held ,");
    book_.Text(2, 1, "open");
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), kSheet, "dataValidation", "sqref"), ElementsAre("B3"));
    EXPECT_EQ(
        AskOpenpyxl(book_.path(),
                    "rule = book.active.data_validations.dataValidation[0]\nprint(rule.type, rule.formula1)"),
        "list \"open,closed,held\"");
}

TEST_F(WorkbookParts, RowsBelowEachOtherWithOneRuleShareOneList)
{
    for (int row = 0; row < 1000; ++row) {
        book_->SetCellValidCheck(row, 0, "a,b");
        book_->SetCellValidCheck(row, 3, row < 500 ? "c,d" : "e,f");
        book_.Text(row, 0, "a");
    }
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), kSheet, "dataValidation", "sqref"),
                ElementsAre("D1:D500", "A1:A1000", "D501:D1000"));
}

TEST_F(WorkbookParts, ListMayBelongToARowThatHasGone)
{
    book_.Text(9, 0, "x");
    book_->SetCellValidCheck(2, 0, "a,b");
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), kSheet, "dataValidation", "sqref"), ElementsAre("A3"));
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookParts, ListOf255CharactersIsTheLongest)
{
    book_->SetCellValidCheck(0, 0, std::string(127, 'a') + "," + std::string(127, 'b'));
    book_->SetCellValidCheck(0, 1, std::string(127, 'a') + "," + std::string(128, 'b'));
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), kSheet, "dataValidation", "sqref"), ElementsAre("A1"));
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("the list of cell B1 has more than 255 characters")));
}

TEST_F(WorkbookParts, QuotesOfAListAreDoubled)
{
    book_->SetCellValidCheck(0, 0, "say \"yes\",no");
    book_->Close();
    EXPECT_EQ(AskOpenpyxl(book_.path(), "print(book.active.data_validations.dataValidation[0].formula1)"),
              "\"say \"\"yes\"\",no\"");
}

TEST_F(WorkbookParts, EmptyRuleIsNoList)
{
    book_->SetCellValidCheck(0, 0, " ,\n");
    book_.Text(0, 0, "x");
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), kSheet, "dataValidation", "sqref"), IsEmpty());
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(WorkbookParts, ListsAboveTheLibrarysCountAreToldOnce)
{
    for (int row = 0; row < 300; ++row)
        book_->SetCellValidCheck(row, 0, "entry " + std::to_string(row));
    book_->Close();
    EXPECT_THAT(Attributes(book_.path(), kSheet, "dataValidation", "sqref"), SizeIs(255));
    EXPECT_THAT(Errors(),
                ElementsAre(HasSubstr("more than 255 lists, from cell A256 on cells take any text")));
}

}  // namespace
