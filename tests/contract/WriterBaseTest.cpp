#include "FetchyardBussiness/DeterminantWriteFile/ReportExportObject.h"
#include "support/ContractTest.h"
#include "support/Pages.h"

#include <fstream>
#include <sstream>

namespace contract {
namespace {

using namespace FetchyardBussiness;

class WriterBaseTest : public ContractTest
{
protected:
    std::string Content(const std::string& name) const
    {
        std::ostringstream text;
        text << std::ifstream(Folder() + name, std::ios::binary).rdbuf();
        return text.str();
    }

    CExportReportDataToFileObject writer_;
};

// A writer that leaves the texts as they are; the CSV writer's are looked at in its own suite.
ExportDataNode TwoSheets()
{
    ExportDataNode node;
    ExportSheet first;
    first.vec_titles = Cells({"Title\nof one"});
    first.vec_columns = Cells({"A", "B"});
    first.vec_rows = {Cells({"1", "2"}), Cells({"3"})};
    ExportSheet second;
    second.vec_titles = Cells({"T2", "T3"});
    second.vec_columns = Cells({"C"});
    second.vec_rows = {Cells({"4\n5"})};
    node.vec_sheets = {first, second};
    return node;
}

TEST_F(WriterBaseTest, BaseWritesNothingAndSaysTrue)
{
    EXPECT_TRUE(writer_.ExportDataToFile(TwoSheets()));
    EXPECT_TRUE(writer_.ExportDataToFile(ExportDataNode()));
    EXPECT_EQ(Trace(), "\n");
}

TEST_F(WriterBaseTest, SuffixOfEveryFormat)
{
    const std::vector<std::pair<int, std::string>> rows = {{0, ".xlsx"}, {1, ".csv"},  {2, ".pdf"},
                                                           {3, ".txt"},  {4, ".html"}, {5, ".7z"},
                                                           {6, ""},      {-1, ""},     {100, ""}};
    for (const auto& [type, suffix] : rows)
        EXPECT_EQ(writer_.GetFileSuffix(type), suffix) << type;
}

TEST_F(WriterBaseTest, NameOfEveryTextLocation)
{
    const std::vector<std::pair<int, std::string>> rows = {
        {0, "left"}, {1, "center"}, {2, "right"}, {3, ""}, {-1, ""}};
    for (const auto& [location, name] : rows)
        EXPECT_EQ(writer_.GetAlignmentName(location), name) << location;
}

TEST_F(WriterBaseTest, StopStateIsLogged)
{
    writer_.SetTaskStopState(true);
    writer_.SetTaskStopState(false);
    EXPECT_EQ(Trace(), R"(
log3 CExportReportDataToFileObject::SetTaskStopState  state = 1
log3 CExportReportDataToFileObject::SetTaskStopState  state = 0
)");
}

TEST_F(WriterBaseTest, TextsOfOneSheetKeepTheirLineFeeds)
{
    const ExportDataNode node = TwoSheets();
    EXPECT_EQ(writer_.GetSheetTitleTexts(node.vec_sheets[0]), QStringList({"Title\nof one"}));
    EXPECT_EQ(writer_.GetSheetColumnTexts(node.vec_sheets[0]), QStringList({"A", "B"}));
}

TEST_F(WriterBaseTest, TextsOfAllSheetsFollowSheetAfterSheet)
{
    const ExportDataNode node = TwoSheets();
    EXPECT_EQ(writer_.GetAllTitleTexts(node), QStringList({"Title\nof one", "T2", "T3"}));
    EXPECT_EQ(writer_.GetAllColumnTexts(node), QStringList({"A", "B", "C"}));
    EXPECT_EQ(writer_.GetAllRowTexts(node),
              QList<QStringList>({QStringList({"1", "2"}), QStringList({"3"}), QStringList({"4\n5"})}));
}

TEST_F(WriterBaseTest, JoinedTextsEndInTheSeparator)
{
    EXPECT_EQ(writer_.JoinTexts({}, ";"), "");
    EXPECT_EQ(writer_.JoinTexts({"a"}, ";"), "a;");
    EXPECT_EQ(writer_.JoinTexts({"a", "", "b"}, "--"), "a----b--");
}

TEST_F(WriterBaseTest, StringsAreAppendedToTheFile)
{
    EXPECT_TRUE(writer_.WriteStrStreamToFile("one", Folder() + "f.txt"));
    EXPECT_TRUE(writer_.WriteStrStreamToFile("two", Folder() + "f.txt"));
    EXPECT_EQ(Content("f.txt"), "onetwo");
    EXPECT_EQ(Trace(), R"(
OpenFile <tmp>/f.txt 15 8192
WriteFile 3
CloseFile
OpenFile <tmp>/f.txt 15 8192
WriteFile 3
CloseFile
)");
}

TEST_F(WriterBaseTest, FileThatCannotBeOpenedIsLogged)
{
    EXPECT_FALSE(writer_.WriteStrStreamToFile("one", Folder() + "none/f.txt"));
    EXPECT_EQ(Trace(), R"(
OpenFile <tmp>/none/f.txt 15 8192
log5 Open file[<tmp>/none/f.txt] failed.
)");
}

TEST_F(WriterBaseTest, FailedWriteIsLoggedBehindTheClosedFile)
{
    fakes::FailCalls("WriteFile", 1, 1);
    EXPECT_FALSE(writer_.WriteStrStreamToFile("four", Folder() + "f.txt"));
    EXPECT_EQ(Trace(), R"(
OpenFile <tmp>/f.txt 15 8192
WriteFile 4 -> fails
CloseFile
log5 Write data to file failed. file name: <tmp>/f.txt, receive data length: 4.
)");
}

TEST_F(WriterBaseTest, EmptyStringMakesTheFile)
{
    EXPECT_TRUE(writer_.WriteStrStreamToFile("", Folder() + "f.txt"));
    EXPECT_TRUE(Exists("f.txt"));
}

}  // namespace
}  // namespace contract
