#include "ServedFolder.h"
#include "station/Data/Store.h"
#include "station/Generated/OutputFile.h"
#include "StationFixture.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

using nlohmann::json;
using namespace SystemTest;
namespace fs = std::filesystem;

namespace {

constexpr char kOrder[] = "/api/v1/events/generated-report";
constexpr char kState[] = "/api/v1/generated/state";
constexpr char kOperate[] = "/api/v1/generated/operate";
constexpr char kDelete[] = "/api/v1/generated/delete-cache";
constexpr int kWorkbook = 0;
constexpr int kCsv = 1;
constexpr int kPage = 2;
constexpr int kText = 3;

// The cells of a line; an empty last one counts as well.
std::vector<std::string> Split(const std::string& text, char separator)
{
    std::vector<std::string> parts(1);
    for (const char letter : text) {
        if (letter == separator)
            parts.emplace_back();
        else
            parts.back() += letter;
    }
    return parts;
}

std::string TextOf(const json& cell)
{
    return cell.is_string() ? cell : cell["Text"];
}

class StationGenerated : public StationFixture
{
protected:
    std::string Order(const json& condition)
    {
        const json answer = station_.Post(kOrder, condition);
        EXPECT_EQ(answer["ErrorCode"], 0) << answer;
        return answer["ServerGenerate"]["TaskId"];
    }
    json Poll(const std::string& guid) { return station_.Post(kState, {{"TaskId", guid}}); }
    // Polls until the state is another one.
    json PollBeyond(const std::string& guid, const std::string& state)
    {
        json answer = Poll(guid);
        while (answer["State"] == state)
            answer = Poll(guid);
        return answer;
    }
    json Operate(int type, const std::string& guid)
    {
        return station_.Post(kOperate, {{"OperateType", type}, {"TaskId", guid}});
    }
    httplib::Result Get(const std::string& guid, const httplib::Headers& headers = {})
    {
        return station_.Connect()->Get("/api/v1/generated/" + guid + "/file", headers);
    }
    // The bytes of a report that is made at once.
    std::string Bytes(json condition)
    {
        condition["ReadyAfterPolls"] = 0;
        const auto answer = Get(Order(condition));
        EXPECT_EQ(answer->status, 200) << answer->body;
        return answer->body;
    }
    // What the check reads in it.
    json Table(const json& condition, const std::string& suffix)
    {
        const std::string path = folder_.filePath("report").toStdString() + suffix;
        std::ofstream(path, std::ios::binary) << Bytes(condition);
        return Check("table.py", path);
    }
    // The rows of the page report with the same condition, behind its columns.
    json PageRows(json condition)
    {
        condition["PageIndex"] = 1;
        condition["PageSize"] = 1000;
        const json sheet = station_.Post("/api/v1/events/report", condition)["Sheets"][0];
        json rows = json::array();
        for (const json& row : json::array({sheet["Columns"]}))
            rows.push_back(row);
        for (const json& row : sheet["Rows"])
            rows.push_back(row);
        for (json& row : rows)
            for (json& cell : row)
                cell = TextOf(cell);
        return rows;
    }
    std::size_t FilesKept() const
    {
        const fs::path folder = station_.DataFolder() + "/generated";
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }
    void ExpectRefused(const std::string& path, const json& body, int code, const std::string& word)
    {
        const json answer = station_.Post(path, body);
        EXPECT_EQ(answer["status"], 200) << body;
        EXPECT_EQ(answer["ErrorModule"], 24) << body;
        EXPECT_EQ(answer["ErrorCode"], code) << body;
        EXPECT_NE(answer["ErrorText"].get<std::string>().find(word), std::string::npos) << answer;
    }

    QTemporaryDir folder_;
};

// A long report that is under way.
class StationLongReport : public StationGenerated
{
protected:
    std::string Begun()
    {
        const std::string guid =
            Order({{"FileType", kPage}, {"Pictures", "embedded"}, {"ReadyAfterPolls", 1000000}});
        while (Poll(guid)["Rows"] == 0)
            std::this_thread::yield();
        return guid;
    }
    // Behind this, whatever was ordered before is over.
    void WaitForNextReport() { Bytes({{"FileType", kCsv}, {"Limit", 1}}); }
};

}  // namespace

TEST_F(StationGenerated, AnswerHasAllThatTheClientNeeds)
{
    json answer = station_.Post(
        kOrder,
        {{"FileType", kPage}, {"PdfPageSize", "A3"}, {"PdfPageOrientation", 0}, {"FailAfterPolls", 1}});
    const std::string guid = answer["ServerGenerate"]["TaskId"];
    const json task = {{"TaskId", guid}};
    EXPECT_EQ(
        answer,
        (json{{"status", 200},
              {"ErrorModule", 0},
              {"ErrorCode", 0},
              {"IsRowColumnData", false},
              {"ServerGenerate",
               {{"FileIsCreated", false},
                {"TaskId", guid},
                {"Query", {{"Method", "POST"}, {"Api", "/api/v1/generated/state"}, {"Request", task.dump()}}},
                {"Download",
                 {{"Method", "GET"},
                  {"Api", "/api/v1/generated/" + guid + "/file"},
                  {"Pattern", 1},
                  {"PdfPageSize", "A3"},
                  {"PdfPageOrientation", 0}}},
                {"DeleteCache",
                 {{"Method", "POST"}, {"Api", "/api/v1/generated/delete-cache"}, {"Request", task.dump()}}},
                {"Operate", {{"Method", "POST"}, {"Api", "/api/v1/generated/operate"}}}}}}));
}

TEST_F(StationGenerated, PollsAreWorkingUntilTheyAreUsedUpAndThenTellTheCalls)
{
    const json order =
        station_.Post(kOrder, {{"FileType", kCsv}, {"ReadyAfterPolls", 2}, {"PdfPageSize", "A5"}});
    const std::string guid = order["ServerGenerate"]["TaskId"];
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Get(guid)->status, 404);
        const json answer = Poll(guid);
        EXPECT_EQ(answer["State"], "working");
        EXPECT_FALSE(answer.contains("Download"));
    }
    const json answer = PollBeyond(guid, "working");
    EXPECT_EQ(answer["State"], "ready");
    EXPECT_EQ(answer["Rows"], 400);
    EXPECT_EQ(answer["Download"], order["ServerGenerate"]["Download"]);
    EXPECT_EQ(answer["DeleteCache"], order["ServerGenerate"]["DeleteCache"]);
    EXPECT_EQ(Get(guid)->status, 200);
}

TEST_F(StationGenerated, OnePollIsWorkingIfNothingIsSaid)
{
    const std::string guid = Order({{"FileType", kCsv}});
    EXPECT_EQ(Poll(guid)["State"], "working");
    EXPECT_EQ(PollBeyond(guid, "working")["State"], "ready");
}

TEST_F(StationGenerated, ReportWithoutPollsIsThereAtOnce)
{
    const json answer = station_.Post(kOrder, {{"FileType", kText}, {"ReadyAfterPolls", 0}});
    EXPECT_EQ(answer["ServerGenerate"]["FileIsCreated"], true);
    const std::string guid = answer["ServerGenerate"]["TaskId"];
    EXPECT_EQ(Get(guid)->status, 200);
    EXPECT_EQ(Poll(guid)["State"], "ready");
}

TEST_F(StationGenerated, OrderedFailureIsToldAfterItsPolls)
{
    const std::string guid = Order({{"FileType", kCsv}, {"ReadyAfterPolls", 0}, {"FailAfterPolls", 2}});
    EXPECT_EQ(Poll(guid)["State"], "working");
    EXPECT_EQ(Poll(guid)["State"], "working");
    const json failed = Poll(guid);
    EXPECT_EQ(failed["State"], "failed");
    EXPECT_EQ(failed["ErrorCode"], 0);
    EXPECT_NE(failed["ErrorText"], "");
    EXPECT_EQ(Get(guid)->status, 404);
    EXPECT_EQ(Operate(1, guid)["ErrorCode"], 0);
    EXPECT_EQ(Poll(guid)["State"], "failed");
}

TEST_F(StationGenerated, DeleteCacheDropsFileAndTask)
{
    const std::string guid = Order({{"FileType", kCsv}, {"ReadyAfterPolls", 0}});
    EXPECT_EQ(FilesKept(), 1u);
    EXPECT_EQ(station_.Post(kDelete, {{"TaskId", guid}})["ErrorCode"], 0);
    EXPECT_EQ(FilesKept(), 0u);
    EXPECT_EQ(Get(guid)->status, 404);
    ExpectRefused(kDelete, {{"TaskId", guid}}, 4, "task");
    ExpectRefused(kState, {{"TaskId", guid}}, 4, "task");
    ExpectRefused(kOperate, {{"TaskId", guid}, {"OperateType", 1}}, 4, "task");
}

TEST_F(StationGenerated, StopRemovesTheFileAndASecondOneChangesNothing)
{
    const std::string guid = Order({{"FileType", kCsv}, {"ReadyAfterPolls", 0}});
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Operate(1, guid)["ErrorCode"], 0);
        EXPECT_EQ(Poll(guid)["State"], "stopped");
        EXPECT_EQ(Get(guid)->status, 404);
        EXPECT_EQ(FilesKept(), 0u);
    }
    EXPECT_EQ(Operate(2, guid)["ErrorCode"], 0);
    EXPECT_EQ(Operate(2, guid)["ErrorCode"], 0) << "a client that asks twice is told the same";
    EXPECT_EQ(Poll(guid)["State"], "stopped") << "a poll that was on its way is no failure";
}

TEST_F(StationLongReport, StopEndsTheMaking)
{
    const std::string guid = Begun();
    EXPECT_EQ(Operate(1, guid)["ErrorCode"], 0);
    EXPECT_EQ(Poll(guid)["State"], "stopped");
    WaitForNextReport();
    EXPECT_LT(Poll(guid)["Rows"], 400);
    EXPECT_EQ(FilesKept(), 1u);
}

TEST_F(StationLongReport, DeleteWhileItIsMadeLeavesNothing)
{
    const std::string guid = Begun();
    EXPECT_EQ(Operate(2, guid)["ErrorCode"], 0);
    EXPECT_EQ(Poll(guid)["State"], "stopped");
    WaitForNextReport();
    EXPECT_EQ(FilesKept(), 1u);
}

TEST_F(StationLongReport, EndOfTheStationAnswersWhoWaitsForAFile)
{
    Begun();
    std::atomic<int> status{0};
    std::thread client([this, &status] {
        status = station_.Post(kOrder, {{"FileType", kText}, {"ReadyAfterPolls", 0}})["status"].get<int>();
    });
    while (station_.RequestCount(kOrder) < 2)
        std::this_thread::yield();
    EXPECT_EQ(station_.Stop(), 0);
    client.join();
    EXPECT_TRUE(status == 500 || status == 503) << status;
}

TEST_F(StationLongReport, StationEndsWhileAReportIsMadeAndTheNextOneStartsClean)
{
    Begun();
    const std::string data = station_.DataFolder();
    EXPECT_EQ(station_.Stop(), 0);
    std::ofstream(data + "/generated/left.csv.part") << "half";
    const ServedFolder again(data);
    EXPECT_TRUE(fs::is_empty(data + "/generated"));
}

TEST_F(StationLongReport, OrdersBeyondTheQueueAreRefused)
{
    Begun();
    json refused;
    for (int i = 0; i < 66 && refused.is_null(); ++i) {
        const json answer = station_.Post(kOrder, {{"FileType", kCsv}});
        if (answer["status"] != 200)
            refused = answer;
    }
    EXPECT_EQ(refused["status"], 503);
    EXPECT_EQ(refused["ErrorCode"], 5);
}

TEST_F(StationGenerated, CsvHasTheCellsOfThePageReport)
{
    for (const char* pictures : {"none", "linked"}) {
        const json condition = {{"FileType", kCsv}, {"Pictures", pictures}, {"MinLevel", 2}};
        EXPECT_EQ(Table(condition, ".csv"), PageRows(condition)) << pictures;
    }
}

TEST_F(StationGenerated, CsvIsUtf8WithAMarkAndLinesAsTheStandardHasThem)
{
    const std::string bytes = Bytes({{"FileType", kCsv}, {"Limit", 1}});
    EXPECT_EQ(bytes.substr(0, 3), "\xEF\xBB\xBF");
    EXPECT_EQ(bytes.substr(3, bytes.find("\r\n") - 3),
              "No.,Time,Camera,Place,Type,Level,Person,Plate,Confidence,Text");
    EXPECT_EQ(bytes.substr(bytes.size() - 2), "\r\n");
}

TEST_F(StationGenerated, TextReportHasOneLineARowWithoutTabsInside)
{
    json expected = PageRows(json::object());
    for (json& row : expected)
        for (json& cell : row) {
            std::string text = cell;
            std::replace_if(
                text.begin(), text.end(), [](char c) { return c == '\n' || c == '\t' || c == '\r'; }, ' ');
            cell = text;
        }
    std::vector<std::string> lines = Split(Bytes({{"FileType", kText}}), '\n');
    EXPECT_EQ(lines.back(), "");
    lines.pop_back();
    json rows = json::array();
    for (const std::string& line : lines)
        rows.push_back(Split(line, '\t'));
    EXPECT_EQ(rows, expected);
}

TEST_F(StationGenerated, WorkbookHasTitlesColumnsAndRowsWithNumbersAsNumbers)
{
    const json sheets = Table({{"FileType", kWorkbook}}, ".xlsx");
    ASSERT_EQ(sheets.size(), 1u);
    const json& sheet = sheets[0];
    EXPECT_EQ(sheet["name"], "Alarms");
    EXPECT_EQ(sheet["merges"], 3);
    EXPECT_EQ(sheet["frozen"], "A5");
    EXPECT_EQ(sheet["filter"], "A4:J404");
    EXPECT_EQ(sheet["rows"][0][0], "Alarm report");
    EXPECT_EQ(sheet["rows"][2][0], "400 events");
    json expected = PageRows(json::object());
    for (std::size_t i = 1; i < expected.size(); ++i) {
        expected[i][0] = std::stoi(expected[i][0].get<std::string>());
        expected[i][5] = std::stoi(expected[i][5].get<std::string>());
        expected[i][8] = std::stoi(expected[i][8].get<std::string>());
    }
    json rows = sheet["rows"];
    rows.erase(rows.begin(), rows.begin() + 3);
    EXPECT_EQ(rows, expected);
}

TEST_F(StationGenerated, WorkbookHasPicturesOrTheirAddresses)
{
    const json embedded = Table({{"FileType", kWorkbook}, {"Pictures", "embedded"}, {"Limit", 3}}, ".xlsx");
    EXPECT_EQ(embedded[0]["pictures"], (json{4, 5, 6}));
    EXPECT_EQ(embedded[0]["heights"], (json{15.75, 15.75}));
    EXPECT_EQ(embedded[0]["stretched"], (json{false, false, false}));
    const json linked = Table({{"FileType", kWorkbook}, {"Pictures", "linked"}, {"Limit", 3}}, ".xlsx");
    EXPECT_EQ(linked[0]["pictures"], json::array());
    EXPECT_EQ(linked[0]["rows"][4][10], "/pictures/event-1.jpg");
}

TEST_F(StationGenerated, PageIsWholeByItself)
{
    const json condition = {{"FileType", kPage}, {"Pictures", "linked"}, {"Limit", 3}};
    const json table = Table(condition, ".html");
    EXPECT_EQ(table["seen"]["img"], 3);
    EXPECT_EQ(table["seen"]["thead"], 1);
    EXPECT_FALSE(table["seen"].contains("script"));
    EXPECT_FALSE(table["seen"].contains("link"));
    const std::string html = Bytes(condition);
    EXPECT_NE(html.find("<meta charset=\"utf-8\">"), std::string::npos);
    EXPECT_NE(html.find("<h1>Alarm report</h1>"), std::string::npos);
    EXPECT_NE(html.find("<p>3 events</p>"), std::string::npos);
    EXPECT_NE(html.find("thead { display: table-header-group; }"), std::string::npos);
    EXPECT_EQ(html.substr(html.size() - 8), "</html>\n");
}

TEST_F(StationGenerated, PageHasTheCellsOfThePageReport)
{
    EXPECT_EQ(Table({{"FileType", kPage}}, ".html")["rows"], PageRows(json::object()));
}

TEST_F(StationGenerated, TextsOfEventsAreNoMarkupAndBrokenOnesAreReplaced)
{
    Station::Event event;
    event.time = 1;
    event.camera_id = 1;
    event.type = "Intrusion";
    event.person = "broken \xFF\xC3";
    event.text = "<script>alert(\"1\")</script> & 'so', on\r\n\ttab";
    Station::AddEvent(*Station::OpenForWriting(station_.DataFolder()), event);
    const json condition = {{"EndTime", "1970-01-02T00:00:00Z"}};
    json of_type = condition;
    for (const int type : {kCsv, kPage}) {
        of_type["FileType"] = type;
        const json table = Table(of_type, type == kCsv ? ".csv" : ".html");
        const json row = type == kCsv ? table[1] : table["rows"][1];
        EXPECT_EQ(row[6], "broken \xEF\xBF\xBD\xEF\xBF\xBD");
        EXPECT_EQ(row[9], event.text);
    }
    of_type["FileType"] = kWorkbook;
    EXPECT_EQ(Table(of_type, ".xlsx")[0]["rows"][4][6], "broken \xEF\xBF\xBD\xEF\xBF\xBD");
    of_type["FileType"] = kText;
    EXPECT_NE(Bytes(of_type).find("'so', on   tab\n"), std::string::npos);
}

TEST_F(StationGenerated, TextLongerThanACellIsCutInTheWorkbookAlone)
{
    Station::Event event;
    event.time = 1;
    event.camera_id = 1;
    event.type = "Intrusion";
    for (int i = 0; i < 20000; ++i)
        event.text += "é";
    Station::AddEvent(*Station::OpenForWriting(station_.DataFolder()), event);
    const json condition = {{"EndTime", "1970-01-02T00:00:00Z"}, {"FileType", kWorkbook}};
    const std::string cell = Table(condition, ".xlsx")[0]["rows"][4][9];
    EXPECT_EQ(cell, event.text.substr(0, 32766));
    EXPECT_EQ(Table({{"EndTime", "1970-01-02T00:00:00Z"}, {"FileType", kCsv}}, ".csv")[1][9], event.text);
}

TEST_F(StationGenerated, ReportWithoutEventsHasItsColumns)
{
    const json condition = {{"Text", "no event says this"}};
    json of_type = condition;
    of_type["FileType"] = kCsv;
    EXPECT_EQ(Table(of_type, ".csv").size(), 1u);
    of_type["FileType"] = kWorkbook;
    EXPECT_EQ(Table(of_type, ".xlsx")[0]["rows"].size(), 4u);
    of_type["FileType"] = kPage;
    EXPECT_EQ(Table(of_type, ".html")["rows"].size(), 1u);
}

TEST_F(StationGenerated, LimitAndFilterHoldAndAPageIsPassedOver)
{
    const json table = Table({{"FileType", kCsv}, {"Limit", 7}, {"PageIndex", 3}, {"PageSize", 2}}, ".csv");
    ASSERT_EQ(table.size(), 8u);
    EXPECT_EQ(table[1][0], "1");
    EXPECT_EQ(Table({{"FileType", kCsv}, {"Limit", 0}, {"PageIndex", "none"}}, ".csv").size(), 1u);
    for (const json& row : Table({{"FileType", kCsv}, {"EventTypes", {"Vehicle"}}}, ".csv"))
        EXPECT_TRUE(row[4] == "Vehicle" || row[4] == "Type") << row;
}

TEST_F(StationGenerated, FileHasItsTypeAndItsParts)
{
    const std::vector<std::string> types = {
        "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet", "text/csv; charset=utf-8",
        "text/html; charset=utf-8", "text/plain; charset=utf-8"};
    for (int type = kWorkbook; type <= kText; ++type) {
        const std::string guid = Order({{"FileType", type}, {"ReadyAfterPolls", 0}});
        const auto whole = Get(guid);
        EXPECT_EQ(whole->get_header_value("Content-Type"), types[static_cast<std::size_t>(type)]);
        const auto rest = Get(guid, {{"Range", "bytes=100-"}, {"If-Range", whole->get_header_value("ETag")}});
        EXPECT_EQ(rest->status, 206);
        EXPECT_TRUE(rest->body == whole->body.substr(100));
        EXPECT_EQ(Get(guid, {{"If-None-Match", whole->get_header_value("ETag")}})->status, 304);
    }
}

TEST_F(StationGenerated, ConditionThatMakesNoSenseIsRefusedInWords)
{
    for (const auto& [condition, word] : std::vector<std::pair<json, std::string>>{
             {json::object(), "FileType is missing"},
             {{{"FileType", nullptr}}, "FileType is missing"},
             {{{"FileType", 4}}, "FileType"},
             {{{"FileType", -1}}, "FileType"},
             {{{"FileType", 1.5}}, "FileType"},
             {{{"FileType", "1"}}, "FileType"},
             {{{"FileType", 18446744073709551615u}}, "FileType"},
             {{{"FileType", 1}, {"ReadyAfterPolls", -1}}, "ReadyAfterPolls"},
             {{{"FileType", 1}, {"ReadyAfterPolls", 1e300}}, "ReadyAfterPolls"},
             {{{"FileType", 1}, {"ReadyAfterPolls", {1}}}, "ReadyAfterPolls"},
             {{{"FileType", 1}, {"FailAfterPolls", 1000001}}, "FailAfterPolls"},
             {{{"FileType", 1}, {"FailAfterPolls", "x"}}, "FailAfterPolls"},
             {{{"FileType", 1}, {"PdfPageSize", "A4 --run"}}, "PdfPageSize"},
             {{{"FileType", 1}, {"PdfPageSize", ""}}, "PdfPageSize"},
             {{{"FileType", 1}, {"PdfPageSize", 4}}, "PdfPageSize"},
             {{{"FileType", 1}, {"PdfPageSize", std::string(33, 'A')}}, "PdfPageSize"},
             {{{"FileType", 1}, {"PdfPageOrientation", 2}}, "PdfPageOrientation"},
             {{{"FileType", 1}, {"BeginTime", "yesterday"}}, "BeginTime"},
             {{{"FileType", 1}, {"CameraIds", "all"}}, "CameraIds"},
             {{{"FileType", 1}, {"Limit", -1}}, "Limit"},
             {json::array(), "object"},
             {json(5), "object"}})
        ExpectRefused(kOrder, condition, 1, word);
    EXPECT_EQ(FilesKept(), 0u);
}

TEST_F(StationGenerated, TaskThatMakesNoSenseIsRefusedInWords)
{
    for (const char* path : {kState, kDelete, kOperate}) {
        ExpectRefused(path, json::object(), 1, "TaskId is missing");
        ExpectRefused(path, {{"TaskId", ""}}, 1, "TaskId is missing");
        ExpectRefused(path, {{"TaskId", 5}}, 1, "TaskId must be a text");
        ExpectRefused(path, json::array({1}), 1, "object");
        EXPECT_EQ(station_.Connect()->Post(path, "{\"TaskId\":", "application/json")->status, 400);
    }
    for (const std::string& guid :
         {std::string("../../station.db"), std::string(1000000, 'x'), std::string(1, '\0')})
        for (const char* path : {kState, kDelete})
            ExpectRefused(path, {{"TaskId", guid}}, 4, "task");
    const std::string guid = Order({{"FileType", kCsv}});
    for (const json& type : {json(nullptr), json(0), json(3), json("1"), json(1.5), json(true)})
        ExpectRefused(kOperate, {{"TaskId", guid}, {"OperateType", type}}, 1, "OperateType");
    ExpectRefused(kOperate, {{"TaskId", guid}}, 1, "OperateType is missing");
}

TEST_F(StationGenerated, NoGuidLeadsToAnotherFile)
{
    std::ofstream(station_.DataFolder() + "/generated/mine.csv") << "mine";
    for (const char* guid : {"..", ".", "%2e%2e", "mine", "mine.csv", "..%2Fstation.db", "%00", "a%5C..%5Cb",
                             "5d2f0a4e-7c11-4b7e-9d5b-000000000009", "%ff"}) {
        const auto answer = Get(guid);
        ASSERT_TRUE(answer) << guid;
        EXPECT_EQ(answer->status, 404) << guid;
        EXPECT_EQ(json::parse(answer->body)["ErrorCode"], 4) << guid;
    }
}

TEST_F(StationGenerated, TwentyClientsAtOnceEachGetTheirReport)
{
    const std::string expected = Bytes({{"FileType", kCsv}});
    std::atomic<int> good{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < 20; ++i)
        clients.emplace_back([this, &expected, &good] {
            const std::string guid = Order({{"FileType", kCsv}, {"ReadyAfterPolls", 1}});
            const json ready = PollBeyond(guid, "working");
            if (ready["State"] == "ready" && Get(guid)->body == expected &&
                station_.Post(kDelete, {{"TaskId", guid}})["ErrorCode"] == 0)
                ++good;
        });
    for (std::thread& client : clients)
        client.join();
    EXPECT_EQ(good, 20);
    EXPECT_EQ(FilesKept(), 1u);
}

TEST_F(StationGenerated, TwoStopsADeleteAndADownloadAtOnceAreEachAnswered)
{
    for (int round = 0; round < 10; ++round) {
        const std::string guid = Order({{"FileType", kCsv}, {"ReadyAfterPolls", 0}});
        std::vector<std::thread> clients;
        clients.emplace_back([this, &guid] { Operate(1, guid); });
        clients.emplace_back([this, &guid] { Operate(1, guid); });
        clients.emplace_back([this, &guid] { Operate(2, guid); });
        clients.emplace_back([this, &guid] { EXPECT_TRUE(Get(guid)); });
        for (std::thread& client : clients)
            client.join();
        EXPECT_EQ(Poll(guid)["State"], "stopped");
    }
    EXPECT_EQ(FilesKept(), 0u);
}

TEST_F(StationGenerated, FullDiskFailsTheReportInWordsAndLeavesNothing)
{
    const std::string data = station_.DataFolder();
    station_.Stop();
    const ServedFolder station(data, {"unshare", "--user", "--map-root-user", "--mount", "sh", "-c",
                                      "mount -t tmpfs -o size=16k small \"$0\" && exec \"$@\"",
                                      QString::fromStdString(data + "/generated")});
    for (int type = kWorkbook; type <= kText; ++type) {
        const json at_once = station.Post(kOrder, {{"FileType", type}, {"ReadyAfterPolls", 0}});
        EXPECT_EQ(at_once["status"], 500) << at_once;
        EXPECT_EQ(at_once["ErrorCode"], 5);
        EXPECT_NE(at_once["ErrorText"].get<std::string>().find("disk"), std::string::npos) << at_once;
        const json order = station.Post(kOrder, {{"FileType", type}});
        const json task = {{"TaskId", order["ServerGenerate"]["TaskId"]}};
        json state = station.Post(kState, task);
        while (state["State"] == "working")
            state = station.Post(kState, task);
        EXPECT_EQ(state["State"], "failed");
        EXPECT_NE(state["ErrorText"].get<std::string>().find("disk"), std::string::npos) << state;
    }
    // What failed gave its room back.
    EXPECT_EQ(station.Post(kOrder, {{"FileType", kCsv}, {"ReadyAfterPolls", 0}, {"Limit", 10}})["ErrorCode"],
              0);
}

TEST(StationOutputFile, DiskThatTakesNothingIsTold)
{
    Station::OutputFile file("/dev/full");
    file.Add("x");
    EXPECT_THROW(file.Close(), Station::StoreError);
    EXPECT_THROW(Station::OutputFile("/dev/null/none"), Station::StoreError);
}
