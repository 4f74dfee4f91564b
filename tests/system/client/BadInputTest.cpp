#include "ClientFixture.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>

using nlohmann::json;
using namespace SystemTest;

namespace {

class ClientBadInput : public ClientFixture
{
protected:
    void ExpectFailedWith(const ClientRun::Result& result, const std::string& words)
    {
        EXPECT_EQ(result.exit_code, 1) << result.output;
        EXPECT_NE(result.output.find(": failed: "), std::string::npos) << result.output;
        EXPECT_NE(result.output.find(words), std::string::npos) << result.output;
    }
};

constexpr char kReportPath[] = "/api/v1/events/report";

}  // namespace

TEST_F(ClientBadInput, TextThatIsNoJsonIsRefusedWithItsPlace)
{
    const auto result = client_.RunTexts({"{\n  \"FileExportRequest\": oops }"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_NE(result.output.find("line 2, column"), std::string::npos) << result.output;
}

TEST_F(ClientBadInput, RequestWithNothingInItIsRefused)
{
    const auto result = client_.RunTexts({"{}"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_NE(result.output.find("FileExportRequest"), std::string::npos) << result.output;
}

TEST_F(ClientBadInput, RequestNestedAHundredThousandTimesIsRefused)
{
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    for (const std::string name : {"TranscodingRequest", "FileRequestList", "FileExportRequest"}) {
        const auto result = client_.RunTexts({"{\"" + name + "\":" + deep + "}"});
        EXPECT_EQ(result.exit_code, 2);
        EXPECT_NE(result.output.find("is nested more than 100 levels deep"), std::string::npos)
            << result.output;
    }
}

TEST_F(ClientBadInput, MisspeltMemberIsToldWithItsPath)
{
    json request = ReportRequest(client_, "Alarms", 1, "none", 10);
    Section(request, "WriteFileCondition")["ExportFileNmae"] = "Alarms";
    const auto result = client_.RunRequests({request});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_NE(result.output.find("/FileExportRequest/RequestData/WriteFileCondition"), std::string::npos)
        << result.output;
    EXPECT_NE(result.output.find("ExportFileNmae"), std::string::npos) << result.output;
}

TEST_F(ClientBadInput, SaveFolderWithoutItsSeparatorIsTold)
{
    json request = ReportRequest(client_, "Alarms", 1, "none", 10);
    Section(request, "WriteFileCondition")["SaveFilePathDir"] = "/somewhere";
    const auto result = client_.RunRequests({request});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_NE(result.output.find("SaveFilePathDir"), std::string::npos) << result.output;
}

TEST_F(ClientBadInput, PageNumberWithoutACommaBehindItIsTold)
{
    json request = ReportRequest(client_, "Alarms", 1, "none", 10);
    Section(request, "ExportFileParam")["RequestCondition"] = R"({"PageSize":10,"PageIndex":1})";
    EXPECT_EQ(client_.RunRequests({request}).exit_code, 2);
}

TEST_F(ClientBadInput, OneBadRequestKeepsTheOthersFromStarting)
{
    const json good = ReportRequest(client_, "Good", 1, "none", 10);
    EXPECT_EQ(client_.RunTexts({good.dump(), "nonsense"}).exit_code, 2);
    EXPECT_TRUE(FilesBelow(client_.ExportFolder()).empty());
}

TEST_F(ClientBadInput, StationThatIsDownFailsTheExport)
{
    client_.UseStation("http://127.0.0.1:1");
    ExpectFailedWith(client_.RunRequests({ReportRequest(client_, "Down", 1, "none", 10)}), "reached");
}

TEST_F(ClientBadInput, SlowStationOnlyTakesLonger)
{
    SetFault({{"Path", kReportPath}, {"Kind", "delay"}, {"DelayMs", 150}, {"Count", -1}});
    const auto result = client_.RunRequests({ReportRequest(client_, "Slow", 1, "none", 200)});
    EXPECT_EQ(result.exit_code, 0) << result.output;
}

TEST_F(ClientBadInput, StatusOf500OnTheSecondPageFailsAndKeepsTheFirst)
{
    SetFault({{"Path", kReportPath}, {"Kind", "status"}, {"Status", 500}, {"After", 1}, {"Count", 1}});
    ExpectFailedWith(client_.RunRequests({ReportRequest(client_, "Half", 1, "none", 200)}), "500");
    const json records =
        json::parse(Check({"csv_rows.py", QString::fromStdString(client_.ExportFolder() + "Half/Half.csv")}));
    EXPECT_GE(records.size(), 50u);
    EXPECT_LT(records.size(), 70u);
}

TEST_F(ClientBadInput, ConnectionCutInMidPageFailsTheExportAndClosesTheWorkbook)
{
    SetFault({{"Path", kReportPath}, {"Kind", "cut"}, {"CutAt", 2000}, {"After", 2}, {"Count", 1}});
    const auto result = client_.RunRequests({ReportRequest(client_, "Cut", 0, "none", 200)});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    const json book =
        json::parse(Check({"workbook.py", QString::fromStdString(client_.ExportFolder() + "Cut/Cut.xlsx")}));
    EXPECT_GE(book[0]["rows"].size(), 100u) << "the two pages that arrived";
}

TEST_F(ClientBadInput, GarbageInMidReportFailsTheExport)
{
    SetFault({{"Path", kReportPath}, {"Kind", "garbage"}, {"After", 1}, {"Count", 1}});
    const auto result = client_.RunRequests({ReportRequest(client_, "Garbage", 1, "none", 200)});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    EXPECT_NE(result.output.find("Garbage: failed: "), std::string::npos) << result.output;
}

TEST_F(ClientBadInput, FolderThatCantBeMadeFailsTheExport)
{
    QFile file(QString::fromStdString(client_.ExportFolder() + "blocked"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    json request = ReportRequest(client_, "Alarms", 1, "none", 10);
    Section(request, "WriteFileCondition")["SaveFilePathDir"] = client_.ExportFolder() + "blocked/";
    ExpectFailedWith(client_.RunRequests({request}), "folder");
}

TEST_F(ClientBadInput, MissingArchiverLeavesTheFolderAndIsTold)
{
    client_.SetEnvironment("PATH", "/nowhere");
    json request = ReportRequest(client_, "Packed", 1, "none", 10);
    Section(request, "WriteFileCondition")["IsNeedCompressZip"] = true;
    const auto result = client_.RunRequests({request});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.output.find("Packed: finished"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("Packed.zip is missing"), std::string::npos) << result.output;
    EXPECT_TRUE(Exists(client_.ExportFolder() + "Packed/Packed.csv"));
}

TEST_F(ClientBadInput, PictureThatIsNoPictureLeavesABlankCell)
{
    SetFault({{"Path", "/pictures/"}, {"Kind", "garbage"}, {"Count", 1}});
    const auto result = client_.RunRequests({ReportRequest(client_, "Blank", 0, "embedded", 5)});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    const json book = json::parse(
        Check({"workbook.py", QString::fromStdString(client_.ExportFolder() + "Blank/Blank.xlsx")}));
    EXPECT_EQ(book[0]["pictures"], 4);
}

TEST_F(ClientBadInput, PictureOfTheRequestThatFailsIsToldAsMissing)
{
    json request = ReportRequest(client_, "Lost", 1, "none", 5);
    Section(request, "DownloadFiles")["ImageDownload"] = {{{"Imageurl", "/pictures/event-999999.jpg"}}};
    const auto result = client_.RunRequests({request});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.output.find("Lost: finished"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("1.jpg is missing"), std::string::npos) << result.output;
}

TEST_F(ClientBadInput, CollectedFailureEndsTheExportAsFailed)
{
    json request = ReportRequest(client_, "Collected", 1, "none", 5);
    request["FileExportRequest"]["RequestData"]["IsContinueDowinloading"] = true;
    Section(request, "DownloadFiles")["ImageDownload"] = {{{"Imageurl", "/pictures/event-999999.jpg"}},
                                                          {{"Imageurl", "/pictures/event-1.jpg"}}};
    ExpectFailedWith(client_.RunRequests({request}), "404");
    const std::vector<std::string> expected = {"2.jpg", "Collected.csv"};
    EXPECT_EQ(FilesBelow(client_.ExportFolder() + "Collected"), expected);
}

TEST_F(ClientBadInput, PathThatCantBeShortenedIsToldInWords)
{
    const std::string deep =
        client_.ExportFolder() + std::string(120, 'd') + "/" + std::string(120, 'e') + "/";
    json request = ReportRequest(client_, "Short", 1, "none", 5);
    Section(request, "WriteFileCondition")["SaveFilePathDir"] = deep;
    const auto result = client_.RunRequests({request});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.output.find("259 bytes"), std::string::npos) << result.output;
}

TEST_F(ClientBadInput, WrongSettingsFileIsTold)
{
    ASSERT_TRUE(QDir().mkpath(QString::fromStdString(client_.Path("data"))));
    QFile file(QString::fromStdString(client_.Path("data/client.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{ \"sites\": 5 }");
    file.close();
    const auto result = client_.RunRequests({ReportRequest(client_, "Alarms", 1, "none", 5)});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.output.find("sites"), std::string::npos) << result.output;
}
