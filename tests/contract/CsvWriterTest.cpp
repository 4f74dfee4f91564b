#include "FetchyardBussiness/DeterminantWriteFile/ReportExportCsv.h"
#include "support/ContractTest.h"
#include "support/Pages.h"

#include <filesystem>

namespace contract {
namespace {

using namespace FetchyardBussiness;
using Zell::Base::Error::ErrorCode;

class CsvWriterTest : public ContractTest
{
protected:
    // A delivery of the report "Alarm" in the test's folder.
    ExportDataNode Delivery(const std::vector<ExportSheet>& sheets) const
    {
        ExportDataNode node;
        node.export_file_type = 1;
        node.file_name = "Alarm";
        node.file_save_path = Folder();
        node.work_station_id = 6;
        node.vec_sheets = sheets;
        return node;
    }

    static ExportSheet RowSheet(const std::vector<ExportCell>& row)
    {
        ExportSheet sheet = Sheet(2, {});
        sheet.vec_rows = {row};
        return sheet;
    }

    // The fields of the one row that the cells give.
    std::string Line(const std::vector<ExportCell>& row)
    {
        fakes::Take();
        EXPECT_TRUE(writer_.ExportDataToFile(Delivery({RowSheet(row)})));
        std::string lines;
        for (const std::string& line : fakes::Take()) {
            if (line.rfind("csv line", 0) == 0)
                lines += line.substr(8);
        }
        return lines;
    }

    CExportReportDataToCSVFileObject writer_;
};

TEST_F(CsvWriterTest, FirstPageIsTitlesBlankRecordColumnsRows)
{
    ExportSheet sheet = Sheet(1, {{"08:00", "door"}});
    sheet.vec_titles = Cells({"Alarms of May", "Gate 3"});
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({sheet})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile to csv file: <tmp>/Alarm.csv.
csv open <tmp>/Alarm.csv
csv line "Alarms of May"
csv line "Gate 3"
csv line "",""
csv line "Time","Text"
csv line "08:00","door"
csv write
csv close
)");
}

TEST_F(CsvWriterTest, ReportWithoutTitlesHasNoBlankRecord)
{
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(1, {})})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile to csv file: <tmp>/Alarm.csv.
csv open <tmp>/Alarm.csv
csv line "Time","Text"
csv write
csv close
)");
}

TEST_F(CsvWriterTest, EmptyColumnHeadersStillGiveARecord)
{
    ExportSheet sheet = Sheet(1, {});
    sheet.vec_columns.clear();
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({sheet})));
    EXPECT_NE(Trace().find("\ncsv open <tmp>/Alarm.csv\ncsv line\ncsv write\n"), std::string::npos);
}

TEST_F(CsvWriterTest, LaterPageAppendsItsRowsAlone)
{
    ExportSheet sheet = Sheet(2, {{"09:00", "gate"}, {"09:01", "yard"}});
    sheet.vec_titles = Cells({"Title"});
    sheet.vec_columns = Cells({"Column"});
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({sheet})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: <tmp>/Alarm.csv.
csv open to append <tmp>/Alarm.csv
csv line "09:00","gate"
csv line "09:01","yard"
csv write
csv close
)");
}

TEST_F(CsvWriterTest, EveryPageIndexOtherThanOneAppends)
{
    for (const int page : {0, -1, 2, 1000}) {
        writer_.ExportDataToFile(Delivery({Sheet(page, {})}));
        EXPECT_NE(Trace().find("csv open to append"), std::string::npos) << page;
    }
}

TEST_F(CsvWriterTest, DeliveryWithoutSheetsIsRefused)
{
    EXPECT_FALSE(writer_.ExportDataToFile(Delivery({})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log5 CExportReportDataToCSVFileObject::ExportDataToFile excel_data.vec_sheets.size() < 1
)");
}

TEST_F(CsvWriterTest, FirstPageMakesTheMissingFolder)
{
    ExportDataNode node = Delivery({Sheet(1, {})});
    node.file_save_path = Folder() + "one/two/";
    EXPECT_TRUE(writer_.ExportDataToFile(node));
    EXPECT_TRUE(Exists("one/two"));
}

TEST_F(CsvWriterTest, LaterPageWithoutItsFolderIsRefusedWithoutALine)
{
    ExportDataNode node = Delivery({Sheet(2, {})});
    node.file_save_path = Folder() + "none/";
    EXPECT_FALSE(writer_.ExportDataToFile(node));
    EXPECT_EQ(Trace(), "\nlog3 CExportReportDataToCSVFileObject::ExportDataToCSVFile\n");
    EXPECT_FALSE(Exists("none"));
}

TEST_F(CsvWriterTest, FileThatCannotBeOpenedIsRefusedWithoutALine)
{
    fakes::FailCalls("csv open", 1, 1);
    fakes::FailCalls("csv open to append", 1, 1);
    EXPECT_FALSE(writer_.ExportDataToFile(Delivery({Sheet(1, {{"a"}})})));
    EXPECT_FALSE(writer_.ExportDataToFile(Delivery({Sheet(2, {{"a"}})})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile to csv file: <tmp>/Alarm.csv.
csv open <tmp>/Alarm.csv -> fails
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: <tmp>/Alarm.csv.
csv open to append <tmp>/Alarm.csv -> fails
)");
}

TEST_F(CsvWriterTest, SheetThatCannotBeOpenedEndsTheDelivery)
{
    ExportSheet second = Sheet(1, {});
    second.sheet_name = "Doors";
    fakes::FailCalls("csv open", 1, 1);
    EXPECT_FALSE(writer_.ExportDataToFile(Delivery({Sheet(1, {}), second})));
    EXPECT_EQ(fakes::CountOf("csv open"), 1);
}

TEST_F(CsvWriterTest, TwoSheetsGiveTwoFilesAndALaterSingleSheetOneWithoutSuffix)
{
    ExportSheet second = Sheet(1, {{"c"}});
    second.sheet_name = "Doors";
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(1, {{"a"}}), second})));
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(2, {{"b"}})})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile to csv file: <tmp>/Alarm_Alarms.csv.
csv open <tmp>/Alarm_Alarms.csv
csv line "Time","Text"
csv line "a"
csv write
csv close
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile to csv file: <tmp>/Alarm_Doors.csv.
csv open <tmp>/Alarm_Doors.csv
csv line "Time","Text"
csv line "c"
csv write
csv close
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: <tmp>/Alarm.csv.
csv open to append <tmp>/Alarm.csv
csv line "b"
csv write
csv close
)");
}

TEST_F(CsvWriterTest, CellTypes)
{
    EXPECT_EQ(Line({Cell("a", 0), Cell("b", 1)}), R"( "a","b")");
    for (const int type : {4, 5, 6, 7, 100, -1})
        EXPECT_EQ(Line({Cell("a"), Cell("gone", type), Cell("b")}), R"( "a","b")") << type;
    EXPECT_EQ(Line({}), "");
}

TEST_F(CsvWriterTest, LineFeedsAreRemovedEverywhere)
{
    ExportSheet sheet = Sheet(1, {{"r\n1\n"}});
    sheet.vec_titles = Cells({"t\n1"});
    sheet.vec_columns = Cells({"c\n1", "\r\nc2"});
    writer_.ExportDataToFile(Delivery({sheet}));
    EXPECT_NE(
        Trace().find("\ncsv line \"t1\"\ncsv line \"\",\"\"\ncsv line \"c1\",\"\rc2\"\ncsv line \"r1\"\n"),
        std::string::npos);
}

TEST_F(CsvWriterTest, PictureCellsAreFetchedBesideTheReport)
{
    ExportSheet sheet = RowSheet({Cell("a"), PictureCell("/p/1.jpg", 2), PictureCell("/p/2.jpg", 3, "door")});
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({sheet})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: <tmp>/Alarm.csv.
csv open to append <tmp>/Alarm.csv
new CImageMultiSyncLoader
SyncLoadImage type=1 url=/p/1.jpg request=/p/1.jpg cache=1 site=6 -> <tmp>/guid-1.jpg
SyncLoadImage type=1 url=/p/2.jpg request=/p/2.jpg cache=1 site=6 -> <tmp>/door.jpg
csv line "a","<tmp>/guid-1.jpg","<tmp>/door.jpg"
csv write
csv close
)");
    EXPECT_TRUE(Exists("guid-1.jpg"));
    EXPECT_TRUE(Exists("door.jpg"));
}

TEST_F(CsvWriterTest, LoaderIsMadeOnceAndOnlyForPictures)
{
    Line({Cell("a")});
    EXPECT_EQ(fakes::CountOf("new CImageMultiSyncLoader"), 0);
    Line({PictureCell("/p/1.jpg", 2)});
    Line({PictureCell("/p/2.jpg", 3)});
    EXPECT_EQ(fakes::CountOf("new CImageMultiSyncLoader"), 1);
}

TEST_F(CsvWriterTest, PictureAddresses)
{
    struct Row
    {
        const char* address;
        const char* key;
    };
    const std::vector<Row> rows = {
        {"/p/1.jpg", "type=1 url=/p/1.jpg request=/p/1.jpg cache=1 site=6"},
        {"/p/1.jpg?a=1?b=2", "type=1 url=/p/1.jpg?a=1?b=2 request=a=1?b=2 cache=1 site=6"},
        {"/d/pic?QUERN&c=3", "type=17 url=/d/pic request=QUERN&c=3 cache=0 site=6"},
        {"/QUERN/pic?c=3", "type=17 url=/QUERN/pic request=c=3 cache=0 site=6"},
        {"/d/QUERN", "type=17 url=/d/QUERN request=/d/QUERN cache=0 site=6"},
        {"/d/quern?x", "type=1 url=/d/quern?x request=x cache=1 site=6"},
        {"?", "type=1 url=? request= cache=1 site=6"},
    };
    for (const Row& row : rows) {
        fakes::Take();
        writer_.ExportDataToFile(Delivery({RowSheet({PictureCell(row.address, 2, "x")})}));
        EXPECT_NE(Trace().find(std::string("\nSyncLoadImage ") + row.key + " -> <tmp>/x.jpg\n"),
                  std::string::npos)
            << row.address;
    }
}

TEST_F(CsvWriterTest, WorkStationOfTheCellHoldsUnlessItLeavesTheChoice)
{
    const std::vector<std::pair<unsigned int, std::string>> rows = {
        {0, "site=0 "}, {9, "site=9 "}, {0xFFFFFFFFU, "site=6 "}};
    for (const auto& [station, shown] : rows) {
        fakes::Take();
        ExportCell cell = PictureCell("/p/1.jpg", 2);
        cell.work_station_id = station;
        writer_.ExportDataToFile(Delivery({RowSheet({cell})}));
        EXPECT_NE(Trace().find(shown), std::string::npos) << station;
    }
}

TEST_F(CsvWriterTest, PictureCellWithoutAnAddressIsAnEmptyField)
{
    EXPECT_TRUE(writer_.ExportDataToFile(
        Delivery({RowSheet({Cell("a"), PictureCell("", 2), PictureCell("", 3, "t"), Cell("b")})})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: <tmp>/Alarm.csv.
csv open to append <tmp>/Alarm.csv
log5  failed itea_column->cell_name =   can not contain *PictureRequest*
log5  failed itea_column->cell_name =   can not contain *PictureRequest*
csv line "a","","","b"
csv write
csv close
)");
}

TEST_F(CsvWriterTest, FailedPictureShowsTheTextOfItsErrorAndTheReportGoesOn)
{
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    fakes::TheScript().error_texts[{21, 404}] = "Not\nfound";
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({RowSheet({PictureCell("/bad", 2), Cell("b")})})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: <tmp>/Alarm.csv.
csv open to append <tmp>/Alarm.csv
new CImageMultiSyncLoader
SyncLoadImage type=1 url=/bad request=/bad cache=1 site=6 -> <tmp>/guid-1.jpg
log5 SyncLoadImage  sync download image failed. first error code: 21, second error code: 404.
GetErrorInfoByCode 21/404
csv line "Notfound","b"
csv write
csv close
)");
}

TEST_F(CsvWriterTest, PicturesOfOneTitleShareOneFile)
{
    EXPECT_EQ(Line({PictureCell("/p/1.jpg", 2, "t"), PictureCell("/p/2.jpg", 2, "t")}),
              R"( "<tmp>/t.jpg","<tmp>/t.jpg")");
}

TEST_F(CsvWriterTest, StopBeforeASheetLeavesItUntouched)
{
    writer_.SetTaskStopState(true);
    fakes::Take();
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(1, {{"a"}})})));
    EXPECT_EQ(Trace(), "\nlog3 CExportReportDataToCSVFileObject::ExportDataToCSVFile\n");
}

TEST_F(CsvWriterTest, StopInsideARowLeavesAShortRowAndTheFileIsClosed)
{
    fakes::OnCall("SyncLoadImage", 1, [this] { writer_.SetTaskStopState(true); });
    ExportSheet sheet = Sheet(1, {});
    sheet.vec_rows = {{Cell("a"), PictureCell("/p/1.jpg", 2, "p"), Cell("gone")}, {Cell("gone too")}};
    ExportSheet second = Sheet(1, {{"never"}});
    second.sheet_name = "Doors";
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({sheet, second})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile to csv file: <tmp>/Alarm_Alarms.csv.
csv open <tmp>/Alarm_Alarms.csv
csv line "Time","Text"
new CImageMultiSyncLoader
SyncLoadImage type=1 url=/p/1.jpg request=/p/1.jpg cache=1 site=6 -> <tmp>/p.jpg
log3 CExportReportDataToFileObject::SetTaskStopState  state = 1
csv line "a","<tmp>/p.jpg"
csv write
csv close
)");
}

TEST_F(CsvWriterTest, StopBetweenRowsEndsTheRows)
{
    fakes::OnCall("csv line", 2, [this] { writer_.SetTaskStopState(true); });
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(1, {{"a"}, {"gone"}})})));
    EXPECT_EQ(fakes::CountOf("csv line"), 2);
    EXPECT_EQ(fakes::CountOf("csv write"), 1);
    EXPECT_EQ(fakes::CountOf("csv close"), 1);
}

TEST_F(CsvWriterTest, WriterGoesOnWhenTheStopIsTakenBack)
{
    writer_.SetTaskStopState(true);
    writer_.SetTaskStopState(false);
    EXPECT_EQ(Line({Cell("a")}), R"( "a")");
}

}  // namespace
}  // namespace contract
