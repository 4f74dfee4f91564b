#include "FetchyardBussiness/DeterminantWriteFile/ReportExportTxt.h"
#include "support/ContractTest.h"
#include "support/Pages.h"

#include <filesystem>
#include <fstream>

namespace contract {
namespace {

using namespace FetchyardBussiness;

class TxtWriterTest : public ContractTest
{
protected:
    // A delivery of the report "Alarm" in the test's folder.
    ExportDataNode Delivery(const std::vector<ExportSheet>& sheets) const
    {
        ExportDataNode node;
        node.export_file_type = 3;
        node.file_name = "Alarm";
        node.file_save_path = Folder();
        node.vec_sheets = sheets;
        return node;
    }

    std::string Text() const
    {
        std::ifstream file(Folder() + "Alarm.txt");  // with the system's own ends of lines
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // What one delivery leaves in a file of its own.
    std::string TextOf(const std::vector<ExportSheet>& sheets)
    {
        std::filesystem::remove(Folder() + "Alarm.txt");
        EXPECT_TRUE(writer_.ExportDataToFile(Delivery(sheets)));
        return Text();
    }

    CExportReportDataToTXTFileObject writer_;
};

TEST_F(TxtWriterTest, FirstPageIsTitlesThenColumnsThenRows)
{
    ExportSheet sheet = Sheet(1, {{"08:00", "door"}, {"08:01", "gate"}});
    sheet.vec_titles = Cells({"Alarms of May", "Gate 3"});
    EXPECT_EQ(TextOf({sheet}),
              "Alarms of May\n"
              "Gate 3\n"
              "Time          Text          \n"
              "08:00          door          \n"
              "08:01          gate          \n");
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToTXTFileObject::ExportDataToFile
log3 CExportReportDataToTXTFileObject::ExportDataToFile to csv file: <tmp>/Alarm.txt.
)");
}

TEST_F(TxtWriterTest, ReportWithoutTitlesStartsWithTheColumns)
{
    EXPECT_EQ(TextOf({Sheet(1, {})}), "Time          Text          \n");
}

TEST_F(TxtWriterTest, ReportWithoutColumnsHasAnEmptyLineThere)
{
    ExportSheet sheet = Sheet(1, {{"a"}});
    sheet.vec_columns.clear();
    EXPECT_EQ(TextOf({sheet}), "\na          \n");
}

TEST_F(TxtWriterTest, LineFeedInsideATextStays)
{
    EXPECT_EQ(TextOf({Sheet(2, {{"one\ntwo", "x"}})}), "one\ntwo          x          \n");
}

TEST_F(TxtWriterTest, EveryKindOfCellShowsItsText)
{
    ExportSheet sheet = Sheet(2, {});
    std::vector<ExportCell> row;
    for (int type = -1; type <= 7; ++type)
        row.push_back(Cell("t" + std::to_string(type), type));
    sheet.vec_rows = {row};
    std::string line;
    for (const ExportCell& cell : row)
        line += cell.cell_name + "          ";
    EXPECT_EQ(TextOf({sheet}), line + "\n");
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 0) << "no picture is fetched";
}

TEST_F(TxtWriterTest, TwoSheetsShareTitlesColumnsAndThenTheirRows)
{
    ExportSheet first = Sheet(1, {{"1", "2"}});
    first.vec_titles = Cells({"First"});
    ExportSheet second = Sheet(1, {{"3", "4"}});
    second.vec_titles = Cells({"Second"});
    second.vec_columns = Cells({"C"});
    EXPECT_EQ(TextOf({first, second}),
              "First\nSecond\n"
              "Time          Text          C          \n"
              "1          2          \n"
              "3          4          \n");
}

TEST_F(TxtWriterTest, LaterPageAddsItsRowsAlone)
{
    TextOf({Sheet(1, {{"1", "2"}})});
    fakes::Take();
    ExportSheet later = Sheet(2, {{"3", "4"}});
    later.vec_titles = Cells({"Title"});
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({later})));
    EXPECT_EQ(Text(), "Time          Text          \n1          2          \n3          4          \n");
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToTXTFileObject::ExportDataToFile
log3 CExportReportDataToTXTFileObject::ExportDataToFile append  to txt file: <tmp>/Alarm.txt.
)");
}

TEST_F(TxtWriterTest, FirstSheetDecidesForAllOfThem)
{
    TextOf({Sheet(1, {{"1", "2"}})});
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(2, {{"3", "4"}}), Sheet(1, {{"5", "6"}})})));
    EXPECT_EQ(Text(),
              "Time          Text          \n1          2          \n"
              "3          4          \n5          6          \n");
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(1, {{"7", "8"}}), Sheet(2, {{"9", "0"}})})));
    EXPECT_EQ(Text(),
              "Time          Text          \n"
              "7          8          \n9          0          \n");
}

TEST_F(TxtWriterTest, LettersOfAnyScriptAreWrittenAsTheyCame)
{
    EXPECT_EQ(TextOf({Sheet(2, {{"Tür", "门", "باب", "🚪"}})}),
              "Tür          门          باب          🚪          \n");
}

TEST_F(TxtWriterTest, NameEndsInTheSuffixOfItsType)
{
    ExportDataNode node = Delivery({Sheet(1, {})});
    node.export_file_type = 1;
    EXPECT_TRUE(writer_.ExportDataToFile(node));
    EXPECT_TRUE(std::filesystem::exists(Folder() + "Alarm.csv"));
}

TEST_F(TxtWriterTest, StopDoesNotCutAPage)
{
    writer_.SetTaskStopState(true);
    EXPECT_EQ(TextOf({Sheet(2, {{"1"}, {"2"}})}), "1          \n2          \n");
}

TEST_F(TxtWriterTest, DeliveryWithoutSheetsIsRefused)
{
    EXPECT_FALSE(writer_.ExportDataToFile(Delivery({})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToTXTFileObject::ExportDataToFile
log5 CExportReportDataToTXTFileObject::ExportDataToFile excel_data.vec_sheets.size() < 1
)");
}

TEST_F(TxtWriterTest, FirstPageMakesTheMissingFolder)
{
    ExportDataNode node = Delivery({Sheet(1, {})});
    node.file_save_path = Folder() + "new/below/";
    EXPECT_TRUE(writer_.ExportDataToFile(node));
    EXPECT_TRUE(std::filesystem::exists(Folder() + "new/below/Alarm.txt"));
}

TEST_F(TxtWriterTest, LaterPageWithoutItsFolderIsRefusedWithoutALine)
{
    ExportDataNode node = Delivery({Sheet(2, {})});
    node.file_save_path = Folder() + "nowhere/";
    EXPECT_FALSE(writer_.ExportDataToFile(node));
    EXPECT_EQ(Trace(), "\nlog3 CExportReportDataToTXTFileObject::ExportDataToFile\n");
}

TEST_F(TxtWriterTest, FileThatCannotBeOpenedIsRefused)
{
    std::filesystem::create_directory(Folder() + "Alarm.txt");
    EXPECT_FALSE(writer_.ExportDataToFile(Delivery({Sheet(1, {})})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToTXTFileObject::ExportDataToFile
log3 CExportReportDataToTXTFileObject::ExportDataToFile to csv file: <tmp>/Alarm.txt.
log3 CExportReportDataToTXTFileObject::ExportDataToFile txt Can't open the file!
)");
    EXPECT_FALSE(writer_.ExportDataToFile(Delivery({Sheet(2, {})})));
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToTXTFileObject::ExportDataToFile
log3 CExportReportDataToTXTFileObject::ExportDataToFile append  to txt file: <tmp>/Alarm.txt.
log3 CExportReportDataToTXTFileObject::ExportDataToFile append Can't open the file!
)");
}

}  // namespace
}  // namespace contract
