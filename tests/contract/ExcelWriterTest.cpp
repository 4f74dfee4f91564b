#include "FetchyardBussiness/DeterminantWriteFile/ReportExportExcel.h"
#include "support/ContractTest.h"
#include "support/Display.h"
#include "support/Pages.h"

#include <QBuffer>
#include <QImage>

#include <algorithm>
#include <memory>

namespace contract {
namespace {

using namespace FetchyardBussiness;
using Zell::Base::Error::ErrorCode;

// JPEG bytes of one colour; 0 dots per inch leaves the resolution to Qt.
std::string Jpeg(int width, int height, int dots_per_inch = 0)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    if (dots_per_inch > 0) {
        image.setDotsPerMeterX(static_cast<int>(dots_per_inch / 0.0254 + 0.5));
        image.setDotsPerMeterY(static_cast<int>(dots_per_inch / 0.0254 + 0.5));
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "jpg");
    return bytes.toStdString();
}

class ExcelWriterTest : public ContractTest
{
protected:
    ExcelWriterTest() { SetDisplayDpi(96, 96); }

    ExportDataNode Delivery(const std::vector<ExportSheet>& sheets, bool is_last = false) const
    {
        ExportDataNode node;
        node.export_file_type = 0;
        node.file_name = "Alarm";
        node.file_save_path = Folder();
        node.file_total_page_is_finished = is_last;
        node.work_station_id = 6;
        node.vec_sheets = sheets;
        return node;
    }

    static ExportSheet Rows(int page_index, const std::vector<std::vector<ExportCell>>& rows)
    {
        ExportSheet sheet = Sheet(page_index, {});
        sheet.vec_columns.clear();
        sheet.vec_rows = rows;
        return sheet;
    }

    // The lines of one delivery that begin with the given words.
    std::string Lines(const ExportDataNode& node, const std::string& start)
    {
        fakes::Take();
        EXPECT_TRUE(writer_->ExportDataToFile(node));
        std::string lines = "\n";
        for (const std::string& line : fakes::Take()) {
            if (line.rfind(start, 0) == 0)
                lines += line + "\n";
        }
        return lines;
    }

    std::unique_ptr<CExportReportDataToEXCELFileObject> writer_ =
        std::make_unique<CExportReportDataToEXCELFileObject>();
};

TEST_F(ExcelWriterTest, FirstAndOnlyPageIsTitlesHeadersRowsAndClose)
{
    ExportSheet sheet = Sheet(1, {{"08:00", "door"}, {"08:01", "gate"}});
    sheet.vec_titles = Cells({"Alarms of May", "Gate 3"});
    EXPECT_TRUE(writer_->ExportDataToFile(Delivery({sheet}, true)));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Alarms
xlsx cell 0,0 "Alarms of May"
xlsx cell 1,0 "Gate 3"
xlsx cell 2,0 "Time"
xlsx cell 2,1 "Text"
xlsx cell 3,0 "08:00"
xlsx cell 3,1 "door"
xlsx cell 4,0 "08:01"
xlsx cell 4,1 "gate"
log3 file  is finished =  1
log3 file  close success, file_path_ = <tmp>/Alarm.xlsx
xlsx close
)");
}

TEST_F(ExcelWriterTest, WorkbookStaysOpenUntilTheLastPage)
{
    EXPECT_TRUE(writer_->ExportDataToFile(Delivery({Sheet(1, {{"a"}})})));
    EXPECT_TRUE(writer_->ExportDataToFile(Delivery({Sheet(2, {{"b"}, {"c"}})})));
    EXPECT_TRUE(writer_->ExportDataToFile(Delivery({Sheet(3, {{"d"}})}, true)));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Alarms
xlsx cell 0,0 "Time"
xlsx cell 0,1 "Text"
xlsx cell 1,0 "a"
log3 file  is finished =  0
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
xlsx sheet Alarms
xlsx used rows
xlsx cell 2,0 "b"
xlsx cell 3,0 "c"
log3 file  is finished =  0
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
xlsx sheet Alarms
xlsx used rows
xlsx cell 4,0 "d"
log3 file  is finished =  1
log3 file  close success, file_path_ = <tmp>/Alarm.xlsx
xlsx close
)");
}

TEST_F(ExcelWriterTest, LaterPageStartsBehindTheRowThatTheWorkbookNames)
{
    fakes::TheScript().used_rows = 41;
    EXPECT_EQ(Lines(Delivery({Sheet(2, {{"b"}})}), "xlsx cell"), "\nxlsx cell 42,0 \"b\"\n");
}

TEST_F(ExcelWriterTest, DeliveryWithoutSheetsIsRefusedAndNothingIsFinished)
{
    EXPECT_FALSE(writer_->ExportDataToFile(Delivery({}, true)));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
log5 CExportReportDataToEXCELFileObject::ExportDataToFile excel_data.vec_sheets.size() < 1
)");
}

TEST_F(ExcelWriterTest, FirstPageMakesTheMissingFolder)
{
    ExportDataNode node = Delivery({Sheet(1, {})});
    node.file_save_path = Folder() + "one/two/";
    writer_->ExportDataToFile(node);
    EXPECT_TRUE(Exists("one/two"));
}

TEST_F(ExcelWriterTest, WorkbookThatCannotBeMadeIsTriedAgainUntilItCan)
{
    fakes::FailCalls("xlsx init", 1, 2);
    EXPECT_TRUE(writer_->ExportDataToFile(Delivery({Sheet(1, {})})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
xlsx init <tmp>/Alarm.xlsx in <tmp>/ -> fails
log5 CExportReportDataToEXCELFileObject::ExportDataToFile ptr_excel_controller_.isNull()
xlsx init <tmp>/Alarm.xlsx in <tmp>/ -> fails
log5 CExportReportDataToEXCELFileObject::ExportDataToFile ptr_excel_controller_.isNull()
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Alarms
xlsx cell 0,0 "Time"
xlsx cell 0,1 "Text"
log3 file  is finished =  0
)");
}

TEST_F(ExcelWriterTest, WorkbookThatCannotBeMadeIsTriedUntilAStop)
{
    fakes::FailCalls("xlsx init", 1, -1);
    fakes::OnCall("xlsx init", 5, [this] { writer_->SetTaskStopState(true); });
    EXPECT_TRUE(writer_->ExportDataToFile(Delivery({Sheet(1, {{"a"}})})));
    EXPECT_EQ(fakes::CountOf("xlsx init"), 5);
    EXPECT_EQ(fakes::CountOf("xlsx sheet"), 0);
    EXPECT_EQ(fakes::Take().back(), "log3 file  is finished =  0");
}

TEST_F(ExcelWriterTest, SheetThatCannotBeAddedIsSkipped)
{
    ExportSheet second = Sheet(1, {});
    second.sheet_name = "Doors";
    fakes::FailCalls("xlsx sheet", 1, 1);
    EXPECT_EQ(Lines(Delivery({Sheet(1, {}), second}), "xlsx"), R"(
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Alarms -> fails
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Doors
xlsx cell 0,0 "Time"
xlsx cell 0,1 "Text"
)");
    fakes::FailCalls("xlsx sheet", 3, 1);
    EXPECT_EQ(Lines(Delivery({Sheet(2, {{"a"}})}), "xlsx"), "\nxlsx sheet Alarms -> fails\n");
    EXPECT_EQ(Lines(Delivery({Sheet(2, {{"a"}})}), "xlsx sheet"), "\nxlsx sheet Alarms\n");
}

TEST_F(ExcelWriterTest, OnlyTheFirstMergeOfATitleRowIsMade)
{
    ExportSheet sheet = Sheet(1, {});
    sheet.vec_titles = Cells({"one", "two"});
    sheet.vec_merges.resize(3);
    sheet.vec_merges[0] = {1, 0, 1, 5, "merged", {}};
    sheet.vec_merges[0].cell_format.font_size = 14;
    sheet.vec_merges[0].cell_format.is_blod = true;
    sheet.vec_merges[0].cell_format.text_location = 1;
    sheet.vec_merges[0].cell_format.background_color = "#112233";
    sheet.vec_merges[0].cell_format.text_color = "#445566";
    sheet.vec_merges[0].cell_format.is_need_wrap = true;
    sheet.vec_merges[1] = {1, 6, 1, 9, "ignored", {}};
    sheet.vec_merges[2] = {2, 0, 2, 3, "behind the titles", {}};
    EXPECT_EQ(Lines(Delivery({sheet}), "xlsx"), R"(
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Alarms
xlsx cell 0,0 "one"
xlsx cell 1,0 "two"
xlsx merge 1,0 to 1,5 "merged" bg=#112233 fg=#445566 size=14 bold loc=1
xlsx cell 2,0 "Time"
xlsx cell 2,1 "Text"
)");
}

TEST_F(ExcelWriterTest, TitlesTakeTheWholeFormatHeadersAndCellsNotTheLocation)
{
    CellFormat format;
    format.font_family = "serif";
    format.font_size = 12;
    format.is_blod = true;
    format.text_location = 2;
    format.background_color = "#DDEBF7";
    format.text_color = "#000000";
    format.is_need_wrap = true;
    ExportSheet sheet = Sheet(1, {{"cell"}});
    sheet.vec_titles = Cells({"title"});
    sheet.vec_columns = Cells({"header"});
    sheet.vec_titles[0].cell_format = format;
    sheet.vec_columns[0].cell_format = format;
    sheet.vec_rows[0][0].cell_format = format;
    EXPECT_EQ(Lines(Delivery({sheet}), "xlsx cell"), R"(
xlsx cell 0,0 "title" bg=#DDEBF7 fg=#000000 size=12 bold loc=2 wrap
xlsx cell 1,0 "header" bg=#DDEBF7 fg=#000000 size=12 bold wrap
xlsx cell 2,0 "cell" bg=#DDEBF7 fg=#000000 size=12 bold wrap
)");
}

TEST_F(ExcelWriterTest, ColumnWidthsAboveZeroAreSet)
{
    ExportSheet sheet = Sheet(1, {});
    sheet.vec_columns = Cells({"a", "b", "c"});
    sheet.vec_columns[0].cell_format.column_width = -1;
    sheet.vec_columns[2].cell_format.column_width = 20;
    EXPECT_TRUE(writer_->ExportDataToFile(Delivery({sheet})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Alarms
xlsx cell 0,0 "a"
xlsx cell 0,1 "b"
xlsx cell 0,2 "c"
log3 CExportReportDataToEXCELFileObject::ExportDataToFile column_now= 2 column_now=2  striterator_comuln->cell_format.column_width =20
xlsx column width 2,2 20
log3 file  is finished =  0
)");
}

TEST_F(ExcelWriterTest, CellTypesKeepTheirColumns)
{
    ExportCell valid = Cell("v", 4);
    valid.cell_format.valid_list = "yes,no";
    ExportCell link = PictureCell("http://x/", 6, "shown");
    EXPECT_EQ(Lines(Delivery({Rows(1, {{Cell("a", 0), Cell("b", 1), valid, Cell("gone", 5), link,
                                        Cell("gone", 7), Cell("gone", -1), Cell("z")}})}),
                    "xlsx"),
              R"(
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Alarms
xlsx cell 1,0 "a"
xlsx cell 1,1 "b"
xlsx valid 1,2 "yes,no"
xlsx cell 1,2 "v"
xlsx link 1,4 "http://x/" "shown"
xlsx cell 1,7 "z"
)");
}

TEST_F(ExcelWriterTest, EmbeddedPictureIsStagedScaledPlacedAndDeletedAtTheEnd)
{
    fakes::TheScript().pictures["/p/1.jpg"] = {{}, Jpeg(400, 200, 96)};
    EXPECT_TRUE(
        writer_->ExportDataToFile(Delivery({Rows(1, {{Cell("a"), PictureCell("/p/1.jpg", 2, "title")}})})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Alarms
xlsx cell 1,0 "a"
new CImageMultiSyncLoader
SyncLoadImage type=1 url=/p/1.jpg request=/p/1.jpg cache=1 site=6 -> <tmp>/1_1.jpg
xlsx row pixels 1 50
xlsx column pixels 1,1 100
xlsx picture 1,1 jpeg x=1 y=0.4 position=1
xlsx row pixels 1 50
log3 file  is finished =  0
)");
    EXPECT_EQ(QImage(QString::fromStdString(Folder() + "1_1.jpg")).size(), QSize(100, 50));
    EXPECT_TRUE(writer_->ExportDataToFile(Delivery({Sheet(2, {})}, true)));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
xlsx sheet Alarms
xlsx used rows
log3 file  is finished =  1
log3 file  close success, file_path_ = <tmp>/Alarm.xlsx
xlsx column pixels 1,1 100
xlsx close
DeleteFileW <tmp>/1_1.jpg
)");
    EXPECT_FALSE(Exists("1_1.jpg"));
}

TEST_F(ExcelWriterTest, SmallPictureIsEnlargedToTheBox)
{
    fakes::TheScript().pictures["/p"] = {{}, Jpeg(10, 20)};
    EXPECT_EQ(Lines(Delivery({Rows(1, {{PictureCell("/p", 2)}})}), "xlsx row"),
              "\nxlsx row pixels 1 100\nxlsx row pixels 1 100\n");
}

TEST_F(ExcelWriterTest, WidestPictureOfAColumnSetsItsWidthAtTheEnd)
{
    fakes::TheScript().pictures["/wide"] = {{}, Jpeg(200, 100)};
    fakes::TheScript().pictures["/high"] = {{}, Jpeg(50, 100)};
    writer_->ExportDataToFile(
        Delivery({Rows(1, {{PictureCell("/high", 2), Cell("x"), PictureCell("/wide", 2)},
                           {PictureCell("/wide", 2), Cell("x"), PictureCell("/high", 2)},
                           {PictureCell("/high", 2)}})}));
    EXPECT_EQ(Lines(Delivery({Sheet(2, {})}, true), "xlsx column"),
              "\nxlsx column pixels 0,0 100\nxlsx column pixels 2,2 100\n");
    EXPECT_EQ(Lines(Delivery({Sheet(2, {})}, true), "xlsx column"), "\n");
}

TEST_F(ExcelWriterTest, RowHeightsOfTheFirstPageAreEachRowsOwn)
{
    fakes::TheScript().pictures["/high"] = {{}, Jpeg(90, 90)};
    fakes::TheScript().pictures["/flat"] = {{}, Jpeg(100, 40)};
    EXPECT_EQ(Lines(Delivery({Rows(1, {{PictureCell("/high", 2), PictureCell("/flat", 2)}, {Cell("a")}})}),
                    "xlsx row"),
              R"(
xlsx row pixels 1 100
xlsx row pixels 1 40
xlsx row pixels 1 100
)");
}

TEST_F(ExcelWriterTest, LastRowOfALaterPageTakesTheTallestPictureOfThePage)
{
    fakes::TheScript().pictures["/p"] = {{}, Jpeg(100, 90)};
    writer_->ExportDataToFile(Delivery({Sheet(1, {})}));
    EXPECT_EQ(Lines(Delivery({Rows(2, {{PictureCell("/p", 2)}, {Cell("a")}, {Cell("b")}})}), "xlsx row"),
              "\nxlsx row pixels 1 90\nxlsx row pixels 3 90\n");
    EXPECT_EQ(Lines(Delivery({Rows(3, {{Cell("a")}})}), "xlsx row"), "\n");
}

TEST_F(ExcelWriterTest, EmptyAddressesAndFailedPicturesLeaveBlanks)
{
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    EXPECT_TRUE(writer_->ExportDataToFile(
        Delivery({Rows(1, {{PictureCell("", 2), PictureCell("/bad", 2), PictureCell("", 3), Cell("z")}})})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Alarms
log5  failed itea_column->cell_name =   can not contain *PictureRequest*
new CImageMultiSyncLoader
SyncLoadImage type=1 url=/bad request=/bad cache=1 site=6 -> <tmp>/1_1.jpg
log5 SyncLoadImage  sync download image failed. first error code: 21, second error code: 404.
log5  failed itea_column->cell_name =   can not contain *PictureRequest*
xlsx cell 1,3 "z"
log3 file  is finished =  0
)");
}

TEST_F(ExcelWriterTest, LinkedPicturesStayBesideTheWorkbook)
{
    EXPECT_EQ(
        Lines(Delivery({Rows(1, {{PictureCell("/p/1.jpg", 3), PictureCell("/p/2.jpg", 3, "door")}})}),
              "xlsx link"),
        "\nxlsx link 1,0 \"<tmp>/1_0.jpg\" \"1_0.jpg\"\nxlsx link 1,1 \"<tmp>/door.jpg\" \"door.jpg\"\n");
    writer_->ExportDataToFile(Delivery({Sheet(2, {})}, true));
    EXPECT_EQ(fakes::CountOf("DeleteFileW"), 0);
    EXPECT_TRUE(Exists("1_0.jpg"));
    EXPECT_TRUE(Exists("door.jpg"));
}

TEST_F(ExcelWriterTest, FailedLinkedPictureShowsTheTextOfItsError)
{
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    ExportCell cell = PictureCell("/bad", 3);
    cell.cell_format.is_blod = true;
    EXPECT_EQ(Lines(Delivery({Rows(1, {{cell}})}), "xlsx cell"), "\nxlsx cell 1,0 \"text of 21/404\" bold\n");
}

TEST_F(ExcelWriterTest, LinkedPictureAsTheFirstOfALaterPageNeedsNoPictureBefore)
{
    EXPECT_EQ(Lines(Delivery({Rows(2, {{PictureCell("/p/1.jpg", 3)}})}), "xlsx link"),
              "\nxlsx link 1,0 \"<tmp>/1_0.jpg\" \"1_0.jpg\"\n");
}

TEST_F(ExcelWriterTest, FileThatIsNoPictureGoesOutWithZeroesAndNoBytes)
{
    fakes::TheScript().pictures["/p"] = {{}, "no picture"};
    EXPECT_EQ(Lines(Delivery({Rows(1, {{PictureCell("/p", 2)}})}), "xlsx"), R"(
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Alarms
xlsx row pixels 1 0
xlsx column pixels 0,0 0
xlsx picture 1,0 empty x=0 y=0.2 position=1
)");
}

// Display scale, picture and the scales that come of them.
struct ScaleRow
{
    unsigned int dpi;
    int width;
    int height;
    int dots_per_inch;
    const char* scales;
};

TEST_F(ExcelWriterTest, ScalesOfEmbeddedPictures)
{
    const std::vector<ScaleRow> rows = {
        // 100 per cent, wider than high: by width / height
        {96, 100, 83, 96, "x=1 y=0.25"},  // 1.205
        {96, 100, 80, 96, "x=1 y=0.25"},  // 1.25
        {96, 130, 100, 96, "x=1 y=0.3"},  // 100 by 76 after scaling: 1.316
        {96, 100, 77, 96, "x=1 y=0.25"},  // 1.299
        {96, 100, 75, 96, "x=1 y=0.3"},   // 1.333
        {96, 100, 60, 96, "x=1 y=0.3"},   // 1.667
        {96, 100, 58, 96, "x=1 y=0.4"},   // 1.724
        {96, 100, 50, 96, "x=1 y=0.4"},   // 2
        {96, 100, 90, 96, "x=1 y=0.4"},   // 1.111
        {96, 100, 99, 96, "x=1 y=0.4"},
        // the other percentages of the table
        {120, 100, 75, 96, "x=1.28 y=0.5"},
        {144, 100, 75, 96, "x=1.5 y=0.6"},
        {168, 100, 75, 96, "x=1.75 y=0.65"},
        // a low resolution, at the four percentages alone
        {96, 100, 75, 71, "x=0.75 y=0.28"},
        {120, 100, 75, 71, "x=0.75 y=0.28"},
        {144, 100, 75, 71, "x=0.75 y=0.28"},
        {168, 100, 75, 71, "x=0.75 y=0.28"},
        {96, 100, 75, 73, "x=1 y=0.3"},
        // not wider than high: no look at the resolution
        {96, 100, 100, 71, "x=0 y=0.2"},
        {96, 50, 100, 96, "x=0 y=0.2"},
        {120, 100, 100, 71, "x=1.28 y=0.25"},
        {144, 50, 100, 96, "x=1.5 y=0.3"},
        {168, 50, 100, 96, "x=1.8 y=0.35"},
        // outside the tables
        {106, 100, 75, 96, "x=0.75 y=0.3"},
        {106, 100, 75, 71, "x=0.75 y=0.3"},
        {106, 50, 100, 96, "x=0.75 y=0.3"},
        {192, 100, 75, 96, "x=0.75 y=0.3"},
        {0, 100, 75, 96, "x=0.75 y=0.3"},
        {0, 50, 100, 96, "x=0.75 y=0.3"},
    };
    for (const ScaleRow& row : rows) {
        SetDisplayDpi(row.dpi, row.dpi);
        fakes::TheScript().pictures["/p"] = {{}, Jpeg(row.width, row.height, row.dots_per_inch)};
        EXPECT_EQ(Lines(Delivery({Rows(1, {{PictureCell("/p", 2)}})}), "xlsx picture"),
                  std::string("\nxlsx picture 1,0 jpeg ") + row.scales + " position=1\n")
            << row.dpi << " dpi, " << row.width << " by " << row.height << ", " << row.dots_per_inch;
    }
}

TEST_F(ExcelWriterTest, PercentageIsTheHalvedSumOfBothDirectionsInIntegers)
{
    fakes::TheScript().pictures["/p"] = {{}, Jpeg(100, 75, 96)};
    const std::vector<std::pair<std::pair<unsigned int, unsigned int>, std::string>> rows = {
        {{96, 97}, "x=1 y=0.3"},      // 100 and 101
        {{97, 97}, "x=0.75 y=0.3"},   // 101 and 101
        {{72, 120}, "x=1 y=0.3"},     // 75 and 125
        {{120, 121}, "x=1.28 y=0.5"}  // 125 and 126
    };
    for (const auto& [dpi, scales] : rows) {
        SetDisplayDpi(dpi.first, dpi.second);
        EXPECT_EQ(Lines(Delivery({Rows(1, {{PictureCell("/p", 2)}})}), "xlsx picture"),
                  "\nxlsx picture 1,0 jpeg " + scales + " position=1\n");
    }
}

TEST_F(ExcelWriterTest, DisplayIsAskedAnewForEveryPicture)
{
    fakes::TheScript().pictures["/p"] = {{}, Jpeg(100, 75, 96)};
    fakes::OnCall("SyncLoadImage", 2, [] { SetDisplayDpi(144, 144); });
    EXPECT_EQ(Lines(Delivery({Rows(1, {{PictureCell("/p", 2), PictureCell("/p", 2)}})}), "xlsx picture"), R"(
xlsx picture 1,0 jpeg x=1 y=0.3 position=1
xlsx picture 1,1 jpeg x=1.5 y=0.6 position=1
)");
}

TEST_F(ExcelWriterTest, StopLeavesTheWorkbookOpenOnAPageThatIsNotTheLast)
{
    fakes::OnCall("xlsx cell", 3, [this] { writer_->SetTaskStopState(true); });
    EXPECT_TRUE(writer_->ExportDataToFile(Delivery({Sheet(1, {{"a", "gone"}, {"gone"}}), Sheet(1, {})})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
xlsx init <tmp>/Alarm.xlsx in <tmp>/
xlsx sheet Alarms
xlsx cell 0,0 "Time"
xlsx cell 0,1 "Text"
xlsx cell 1,0 "a"
log3 CExportReportDataToFileObject::SetTaskStopState  state = 1
log3 file  is finished =  0
)");
    EXPECT_TRUE(writer_->ExportDataToFile(Delivery({Sheet(0, {})}, true)));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToEXCELFileObject::ExportDataToFile
log3 file  is finished =  1
log3 file  close success, file_path_ = <tmp>/Alarm.xlsx
xlsx close
)");
}

TEST_F(ExcelWriterTest, StopIsSeenAtTitlesAndHeaders)
{
    ExportSheet sheet = Sheet(1, {{"gone"}});
    sheet.vec_titles = Cells({"one", "gone"});
    fakes::OnCall("xlsx cell", 1, [this] { writer_->SetTaskStopState(true); });
    EXPECT_EQ(Lines(Delivery({sheet}), "xlsx cell"), "\nxlsx cell 0,0 \"one\"\n");
    writer_->SetTaskStopState(false);
    fakes::OnCall("xlsx cell", 3, [this] { writer_->SetTaskStopState(true); });
    EXPECT_EQ(Lines(Delivery({Sheet(1, {{"gone"}})}), "xlsx cell"),
              "\nxlsx cell 0,0 \"Time\"\nxlsx cell 0,1 \"Text\"\n");
}

}  // namespace
}  // namespace contract
