#include "ClientFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

using nlohmann::json;
using namespace SystemTest;

namespace {

class ClientExport : public ClientFixture
{
protected:
    // A camera answers at its own address for its own events only.
    std::string DevicePicture(int event)
    {
        const auto connection = station_.Connect();
        for (int camera = 1; camera <= 12; ++camera) {
            const std::string address =
                "/device/picture?QUERN&camera=" + std::to_string(camera) + "&event=" + std::to_string(event);
            const auto answer = connection->Get(address.c_str());
            if (answer && answer->status == 200)
                return address;
        }
        ADD_FAILURE() << "no camera has event " << event;
        return "";
    }
};

std::vector<std::vector<std::string>> CsvRecords(const std::string& path)
{
    return json::parse(Check({"csv_rows.py", QString::fromStdString(path)}));
}

json Workbook(const std::string& path)
{
    return json::parse(Check({"workbook.py", QString::fromStdString(path)}));
}

// Records behind the titles, the blank record and the header.
std::size_t RowsOf(const std::vector<std::vector<std::string>>& records)
{
    std::size_t header = 0;
    while (header < records.size() && records[header].size() < 3)
        ++header;
    return records.size() - header - 1;
}

}  // namespace

TEST_F(ClientExport, CsvReportHoldsEveryRowOfEveryPage)
{
    const auto result = client_.RunRequests({ReportRequest(client_, "Alarms", 1, "none", 230)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const auto records = CsvRecords(client_.ExportFolder() + "Alarms/Alarms.csv");
    EXPECT_EQ(RowsOf(records), 230u);
    std::set<std::string> numbers;
    for (std::size_t i = records.size() - 230; i < records.size(); ++i)
        numbers.insert(records[i].front());
    EXPECT_EQ(numbers.size(), 230u) << "a row came twice or not at all";
    EXPECT_NE(result.output.find("Alarms: finished"), std::string::npos) << result.output;
}

TEST_F(ClientExport, TextReportHoldsTheTextsOfTheCsv)
{
    const auto result = client_.RunRequests(
        {ReportRequest(client_, "A", 3, "none", 120), ReportRequest(client_, "B", 1, "none", 120)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    std::ifstream file(client_.ExportFolder() + "A/A.txt", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    ASSERT_FALSE(text.empty());
    const auto records = CsvRecords(client_.ExportFolder() + "B/B.csv");
    std::size_t place = 0;
    for (std::size_t i = records.size() - 120; i < records.size(); ++i) {
        // The event's number stands first in its line.
        place = text.find("\n" + records[i].front() + "          ", place);
        ASSERT_NE(place, std::string::npos) << records[i].front();
    }
}

TEST_F(ClientExport, LinkedPicturesLieBesideTheCsvUnderThePathsThatItNames)
{
    const auto result = client_.RunRequests({ReportRequest(client_, "Linked", 1, "linked", 60)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    std::size_t named = 0;
    for (const auto& record : CsvRecords(client_.ExportFolder() + "Linked/Linked.csv")) {
        for (const std::string& field : record) {
            if (field.size() > 4 && field.substr(field.size() - 4) == ".jpg") {
                EXPECT_TRUE(Exists(field)) << field;
                ++named;
            }
        }
    }
    EXPECT_EQ(named, 60u);
}

TEST_F(ClientExport, WorkbookIsWholeForAnotherReader)
{
    const auto result = client_.RunRequests({ReportRequest(client_, "Book", 0, "embedded", 120)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const json book = Workbook(client_.ExportFolder() + "Book/Book.xlsx");
    ASSERT_EQ(book.size(), 1u);
    EXPECT_EQ(book[0]["pictures"], 120);
    EXPECT_FALSE(book[0]["merges"].empty());
    EXPECT_GE(book[0]["rows"].size(), 121u);
    EXPECT_EQ(FilesBelow(client_.ExportFolder() + "Book"), std::vector<std::string>{"Book.xlsx"})
        << "the staging pictures are gone";
}

// The workbook keeps a picture as the library re-encoded it; that each is there and has a size is judged by
// the other reader.
TEST_F(ClientExport, RealPhotographsThatWereImportedStandInTheWorkbook)
{
    const auto import =
        RunStation({"import", PHOTOGRAPHS, "--data", QString::fromStdString(station_.DataFolder())});
    ASSERT_NE(import.output.find("imported 12 photographs"), std::string::npos) << import.output;
    json request = ReportRequest(client_, "Photographs", 0, "embedded", 50);
    Section(request, "ExportFileParam")["RequestCondition"] =
        R"({"PageIndex":1,"PageSize":5,"Pictures":"embedded","EventTypes":["Photograph"]})";
    const auto result = client_.RunRequests({request});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const json sheet = Workbook(client_.ExportFolder() + "Photographs/Photographs.xlsx")[0];
    EXPECT_EQ(sheet["pictures"], 12);
    int of_the_camera = 0;
    for (const json& row : sheet["rows"]) {
        for (const json& cell : row)
            of_the_camera += cell == "2003-11-23 18:07:37" ? 1 : 0;
    }
    EXPECT_EQ(of_the_camera, 1) << "the time of the photograph's EXIF part is the event's";
}

TEST_F(ClientExport, WorkbookAndCsvOfOneConditionHoldTheSameTexts)
{
    const auto result = client_.RunRequests(
        {ReportRequest(client_, "A", 0, "none", 75), ReportRequest(client_, "B", 1, "none", 75)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const json rows = Workbook(client_.ExportFolder() + "A/A.xlsx")[0]["rows"];
    const auto records = CsvRecords(client_.ExportFolder() + "B/B.csv");
    for (std::size_t i = 1; i <= 75; ++i) {
        const json& row = rows[rows.size() - i];
        const auto& record = records[records.size() - i];
        for (std::size_t column = 0; column < record.size(); ++column) {
            std::string text = row[column].is_null() ? "" : row[column].get<std::string>();
            text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
            EXPECT_EQ(text, record[column]);
        }
    }
}

TEST_F(ClientExport, PicturesOfTheRequestAreFetchedUnderTheirNames)
{
    json request = ReportRequest(client_, "Pictures", 1, "none", 10);
    Section(request, "DownloadFiles")["ImageDownload"] = {
        {{"Imageurl", "/pictures/event-1.jpg"}, {"ImageName", "a"}},
        {{"Imageurl", "/pictures/event-2.jpg"}, {"ImageName", "a"}},
        {{"Imageurl", DevicePicture(3)}, {"FolderName", "Device"}}};
    const auto result = client_.RunRequests({request});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const std::vector<std::string> expected = {"Device/3.jpg", "Pictures.csv", "a(2).jpg", "a.jpg"};
    EXPECT_EQ(FilesBelow(client_.ExportFolder() + "Pictures"), expected);
}

TEST_F(ClientExport, ReportWithoutRowsIsStillAReport)
{
    json request = ReportRequest(client_, "Nothing", 0, "none", 10);
    Section(request, "ExportFileParam")["RequestCondition"] =
        R"({"PageIndex":1,"PageSize":50,"Text":"no such text anywhere"})";
    const auto result = client_.RunRequests({request});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(Workbook(client_.ExportFolder() + "Nothing/Nothing.xlsx").size(), 1u);
}

TEST_F(ClientExport, SampleRequestOfTheDocumentsRuns)
{
    const auto result = client_.Run({"run", QString(DOCS_FOLDER) + "/requests/report-export.sample.json"});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_TRUE(Exists(client_.ExportFolder() + "Alarms/Pictures/first alarm.jpg"));
}

TEST_F(ClientExport, NamesOutsideTheLatinScriptReachTheDisk)
{
    const auto result = client_.RunRequests({ReportRequest(client_, "报警 تنبيه 🚨", 1, "none", 20)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_TRUE(Exists(client_.ExportFolder() + "报警 تنبيه 🚨/报警 تنبيه 🚨.csv"));
}
