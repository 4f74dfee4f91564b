#include "OfficeTest.h"
#include "WorkbookCheck.h"

#include <fstream>

using ::testing::Eq;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ZellOfficeKit::ExpectedSheet;
using ZellOfficeKit::FindDamage;

namespace {

constexpr char kRowsBegin[] = "<sheetData>";

class WorkbookCheck : public OfficeTest
{
protected:
    WorkbookCheck()
    {
        Book book(Report("r.xlsx"));
        book->AddSheetByName("Alarms");
        for (int row = 0; row < 50; ++row)
            book.Text(row, 0, "row " + std::to_string(row));
        book->Close();
        const std::string xml = Member(book.path(), "xl/worksheets/sheet1.xml");
        const std::size_t begin = xml.find(kRowsBegin) + sizeof(kRowsBegin) - 1;
        row_bytes_ = xml.find("</sheetData>") - begin;
    }

    std::string Damage(const std::vector<ExpectedSheet>& expected) const
    {
        return FindDamage(Report("r.xlsx"), expected);
    }

    void Write(const std::string& bytes) const
    {
        std::ofstream(Report("r.xlsx"), std::ios::binary | std::ios::trunc) << bytes;
    }

    std::uint64_t row_bytes_ = 0;
};

TEST_F(WorkbookCheck, WholeWorkbookHasNoDamage)
{
    EXPECT_EQ(Damage({{1, row_bytes_}}), "");
}

TEST_F(WorkbookCheck, SheetWithFewerBytesOfRowsIsFound)
{
    EXPECT_EQ(Damage({{1, row_bytes_ + 20}}), "xl/worksheets/sheet1.xml lacks rows");
}

TEST_F(WorkbookCheck, MissingSheetIsFound)
{
    EXPECT_EQ(Damage({{1, row_bytes_}, {2, 100}}), "xl/worksheets/sheet2.xml is missing");
}

TEST_F(WorkbookCheck, FileCutAnywhereIsFound)
{
    const std::string whole = ReadWhole(Report("r.xlsx"));
    for (std::size_t size = 0; size < whole.size(); size += 37) {
        Write(whole.substr(0, size));
        EXPECT_THAT(Damage({{1, row_bytes_}}), HasSubstr("directory")) << size;
    }
}

TEST_F(WorkbookCheck, ZeroedPiecesNeverPassForXmlThatEnds)
{
    const std::string whole = ReadWhole(Report("r.xlsx"));
    const std::size_t begin = whole.find("xl/worksheets/sheet1.xml") + 30;
    std::string damaged = whole;
    damaged.replace(begin, 60, 60, '\0');
    Write(damaged);
    EXPECT_THAT(Damage({{1, row_bytes_}}), Eq("xl/worksheets/sheet1.xml is cut"));
}

TEST_F(WorkbookCheck, AnyByteMayBeWrongWithoutACrash)
{
    const std::string whole = ReadWhole(Report("r.xlsx"));
    for (std::size_t at = 0; at < whole.size(); at += 11) {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x5A);
        Write(damaged);
        Damage({{1, row_bytes_}});
    }
    Write(whole);
    EXPECT_EQ(Damage({{1, row_bytes_}}), "");
}

TEST_F(WorkbookCheck, MissingFileIsFound)
{
    EXPECT_EQ(FindDamage(Report("none.xlsx"), {}), "the file has no directory");
}

TEST_F(WorkbookCheck, WorkbookWithSixtyFourBitSizesIsReadBack)
{
    ZellOfficeKit::OfficeLimits limits;
    limits.zip64_above = 0;
    Lower(limits);
    Book book(Report("big.xlsx"));
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "one");
    book->Close();
    EXPECT_THAT(Errors(), IsEmpty());
    EXPECT_EQ(AskOpenpyxl(book.path(), "print(book['Alarms']['A1'].value)"), "one");
}

}  // namespace
