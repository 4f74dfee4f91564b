#include "StationFixture.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kReport[] = "/api/v1/events/report";

class StationReport : public StationFixture
{
protected:
    json Page(json condition, int index = 1, int size = 100)
    {
        condition["PageIndex"] = index;
        condition["PageSize"] = size;
        return station_.Post(kReport, condition);
    }
    static const json& Rows(const json& page) { return page["Sheets"][0]["Rows"]; }
    // A cell's text, whichever of its two forms it has.
    static std::string Text(const json& cell) { return cell.is_string() ? cell : cell["Text"]; }

    // Column of all rows of a report.
    std::vector<std::string> Column(const json& condition, std::size_t column, int size = 1000)
    {
        std::vector<std::string> texts;
        for (int index = 1;; ++index) {
            const json page = Page(condition, index, size);
            for (const json& row : Rows(page))
                texts.push_back(Text(row[column]));
            if (page["TotalPageIsFinished"])
                return texts;
        }
    }
    void ExpectRefused(const json& condition, const std::string& word)
    {
        const json answer = station_.Post(kReport, condition);
        EXPECT_EQ(answer["status"], 200);
        EXPECT_EQ(answer["ErrorModule"], 24) << answer;
        EXPECT_EQ(answer["ErrorCode"], 1) << answer;
        EXPECT_NE(answer["ErrorText"].get<std::string>().find(word), std::string::npos) << answer;
    }
};

constexpr std::size_t kTime = 1;
constexpr std::size_t kCamera = 2;
constexpr std::size_t kType = 4;
constexpr std::size_t kLevel = 5;
constexpr std::size_t kText = 9;
constexpr std::size_t kPicture = 10;

}  // namespace

TEST_F(StationReport, FirstPageHasTitlesColumnsMergesAndFormats)
{
    const json sheet = Page(json::object())["Sheets"][0];
    EXPECT_EQ(sheet["SheetName"], "Alarms");
    EXPECT_EQ(sheet["PageIndex"], 1);
    ASSERT_EQ(sheet["Titles"].size(), 3u);
    EXPECT_EQ(sheet["Titles"][0]["Text"], "Alarm report");
    EXPECT_EQ(sheet["Titles"][1]["Text"], "All times (UTC)");
    EXPECT_EQ(sheet["Titles"][2]["Text"], "400 events");
    ASSERT_EQ(sheet["Columns"].size(), 10u);
    for (const json& column : sheet["Columns"])
        EXPECT_GT(sheet["Formats"][column["Format"].get<std::size_t>()]["ColumnWidth"], 0);
    ASSERT_EQ(sheet["Merges"].size(), 3u);
    EXPECT_EQ(sheet["Merges"][1]["FirstRow"], 1);
    EXPECT_EQ(sheet["Merges"][1]["LastColumn"], 9);
}

TEST_F(StationReport, LaterPageHasRowsAndFormatsOnly)
{
    const json sheet = Page(json::object(), 2)["Sheets"][0];
    EXPECT_EQ(sheet["PageIndex"], 2);
    EXPECT_EQ(sheet["Rows"].size(), 100u);
    EXPECT_FALSE(sheet["Formats"].empty());
    for (const char* name : {"Titles", "Columns", "Merges"})
        EXPECT_FALSE(sheet.contains(name)) << name;
}

TEST_F(StationReport, PagesCoverEveryEventOnceInTheOrderOfTime)
{
    const std::vector<std::string> times = Column(json::object(), kTime, 37);
    ASSERT_EQ(times.size(), 400u);
    EXPECT_TRUE(std::is_sorted(times.begin(), times.end()));
    const std::vector<std::string> numbers = Column(json::object(), 0, 37);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        ASSERT_EQ(numbers[i], std::to_string(i + 1));
}

TEST_F(StationReport, PageAskedForOutOfTurnIsTheSameAsInTurn)
{
    const json alone = Rows(Page(json::object(), 3, 50));
    Page(json::object(), 1, 50);
    Page(json::object(), 2, 50);
    EXPECT_EQ(Rows(Page(json::object(), 3, 50)), alone);
}

TEST_F(StationReport, LastFullPageSaysThatItIsTheLast)
{
    EXPECT_EQ(Page(json::object(), 3, 100)["TotalPageIsFinished"], false);
    EXPECT_EQ(Page(json::object(), 4, 100)["TotalPageIsFinished"], true);
    EXPECT_EQ(Rows(Page(json::object(), 4, 100)).size(), 100u);
}

TEST_F(StationReport, PageBehindTheLastIsEmptyAndFinished)
{
    const json page = Page(json::object(), 5, 100);
    EXPECT_TRUE(Rows(page).empty());
    EXPECT_EQ(page["TotalPageIsFinished"], true);
}

TEST_F(StationReport, EmptyResultIsOnePageWithoutRows)
{
    const json page = Page({{"Text", "no event says this"}});
    EXPECT_TRUE(Rows(page).empty());
    EXPECT_EQ(page["TotalPageIsFinished"], true);
    EXPECT_EQ(page["Sheets"][0]["Titles"][2]["Text"], "0 events");
    EXPECT_EQ(page["Sheets"][0]["Columns"].size(), 10u);
}

TEST_F(StationReport, LimitEndsTheReportInMidPage)
{
    const json second = Page({{"Limit", 70}}, 2, 50);
    EXPECT_EQ(Rows(second).size(), 20u);
    EXPECT_EQ(second["TotalPageIsFinished"], true);
    EXPECT_EQ(Page({{"Limit", 70}}, 1, 50)["Sheets"][0]["Titles"][2]["Text"], "70 events");
    EXPECT_EQ(Page({{"Limit", 50}}, 1, 50)["TotalPageIsFinished"], true);
    EXPECT_TRUE(Rows(Page({{"Limit", 0}}, 1, 50)).empty());
}

TEST_F(StationReport, TimesAreFromTheBeginUpToBeforeTheEnd)
{
    const std::vector<std::string> all = Column(json::object(), kTime);
    const std::string begin = all[100];
    const std::string end = all[200];
    const std::vector<std::string> part = Column({{"BeginTime", begin}, {"EndTime", end}}, kTime);
    ASSERT_FALSE(part.empty());
    EXPECT_EQ(part.front(), begin);
    EXPECT_LT(part.back(), end);
    std::string iso = begin;
    iso[10] = 'T';
    EXPECT_EQ(Column({{"BeginTime", iso + "Z"}, {"EndTime", end}}, kTime), part);
}

TEST_F(StationReport, OffsetOfATimeIsTakenOff)
{
    EXPECT_EQ(Column({{"BeginTime", "2026-01-20T02:00:00+02:00"}}, kTime),
              Column({{"BeginTime", "2026-01-20T00:00:00.000Z"}}, kTime));
}

TEST_F(StationReport, FiltersByCameraTypeAndLevel)
{
    const std::vector<std::string> cameras = Column({{"CameraIds", {1, 7}}}, kCamera);
    EXPECT_EQ(std::set<std::string>(cameras.begin(), cameras.end()),
              (std::set<std::string>{"Gate North", "Reception"}));
    const std::vector<std::string> types = Column({{"EventTypes", {"Intrusion", "Vehicle"}}}, kType);
    EXPECT_EQ(std::set<std::string>(types.begin(), types.end()),
              (std::set<std::string>{"Intrusion", "Vehicle"}));
    const std::vector<std::string> levels = Column({{"MinLevel", 4}}, kLevel);
    EXPECT_EQ(std::set<std::string>(levels.begin(), levels.end()), (std::set<std::string>{"4", "5"}));
    EXPECT_TRUE(Column({{"CameraIds", {999}}}, kCamera).empty());
}

TEST_F(StationReport, FiltersByPartOfATextWithoutWildcards)
{
    for (const std::string& text : Column({{"Text", "Lines"}}, kText))
        ADD_FAILURE() << text;
    const std::vector<std::string> found = Column({{"Text", "PERSON"}}, kText);
    ASSERT_FALSE(found.empty());
    EXPECT_TRUE(Column({{"Text", "P%n"}}, kText).empty());
    EXPECT_TRUE(Column({{"Text", "P_rson"}}, kText).empty());
    EXPECT_FALSE(Column({{"Text", "王伟"}}, kText).empty());
}

TEST_F(StationReport, CellsOfLevelsAreColouredBySeverity)
{
    const json sheet = Page(json::object(), 1, 400)["Sheets"][0];
    std::set<std::pair<std::string, std::string>> colours;
    for (const json& row : sheet["Rows"])
        colours.emplace(row[kLevel]["Text"],
                        sheet["Formats"][row[kLevel]["Format"].get<std::size_t>()]["BackgroundColor"]);
    EXPECT_EQ(colours,
              (std::set<std::pair<std::string, std::string>>{
                  {"1", "#E2EFDA"}, {"2", "#DDEBF7"}, {"3", "#FFF2CC"}, {"4", "#F8CBAD"}, {"5", "#C00000"}}));
}

TEST_F(StationReport, PictureCellsAreEmbeddedOrLinkedAndNamedForFiles)
{
    const json embedded = Page({{"Pictures", "embedded"}})["Sheets"][0];
    const json linked = Page({{"Pictures", "linked"}})["Sheets"][0];
    EXPECT_EQ(embedded["Columns"].size(), 11u);
    std::set<std::string> titles;
    for (const json& row : linked["Rows"]) {
        const std::string title = row[kPicture]["Title"];
        EXPECT_EQ(title.find_first_of("/\\:*?\"<>|"), std::string::npos) << title;
        titles.insert(title);
        EXPECT_EQ(row[kPicture]["Text"].get<std::string>().rfind("/pictures/event-", 0), 0u);
        EXPECT_EQ(linked["Formats"][row[kPicture]["Format"].get<std::size_t>()]["CellType"], 3);
    }
    EXPECT_EQ(titles.size(), linked["Rows"].size());
    for (const json& row : embedded["Rows"])
        EXPECT_EQ(embedded["Formats"][row[kPicture]["Format"].get<std::size_t>()]["CellType"], 2);
}

TEST_F(StationReport, LargestPageHoldsTenThousandRows)
{
    EXPECT_EQ(Rows(Page(json::object(), 1, 10000)).size(), 400u);
    ExpectRefused({{"PageIndex", 1}, {"PageSize", 10001}}, "PageSize");
}

TEST_F(StationReport, BadMembersAreRefusedByName)
{
    ExpectRefused({{"PageSize", 10}}, "PageIndex is missing");
    ExpectRefused({{"PageIndex", 1}}, "PageSize is missing");
    ExpectRefused({{"PageIndex", 0}, {"PageSize", 10}}, "PageIndex");
    ExpectRefused({{"PageIndex", -1}, {"PageSize", 10}}, "PageIndex");
    ExpectRefused({{"PageIndex", 1.5}, {"PageSize", 10}}, "PageIndex");
    ExpectRefused({{"PageIndex", "1"}, {"PageSize", 10}}, "PageIndex");
    ExpectRefused({{"PageIndex", 18446744073709551615u}, {"PageSize", 10}}, "PageIndex");
    const std::vector<std::pair<std::string, json>> wrong = {{"PageSize", 0},
                                                             {"BeginTime", "yesterday"},
                                                             {"EndTime", "2026-02-30T00:00:00Z"},
                                                             {"EndTime", 17},
                                                             {"CameraIds", 3},
                                                             {"CameraIds", {1, "two"}},
                                                             {"EventTypes", "Fire"},
                                                             {"EventTypes", json::array({1})},
                                                             {"MinLevel", 6},
                                                             {"Text", 5},
                                                             {"Pictures", "all"},
                                                             {"Limit", -1},
                                                             {"CheckPasswordRequest", "operator"}};
    for (const auto& [name, value] : wrong) {
        json condition = {{"PageIndex", 1}, {"PageSize", 10}};
        condition[name] = value;
        ExpectRefused(condition, name);
    }
    ExpectRefused(json::array({1, 2}), "object");
}

TEST_F(StationReport, MembersThatAreNotKnownArePassedOver)
{
    EXPECT_EQ(Page({{"SomethingNew", {{"a", 1}}}})["ErrorCode"], 0);
}

TEST_F(StationReport, TextThatIsNoJsonIsABadRequest)
{
    for (const char* body : {"", "{", "PageIndex=1", "{\"PageIndex\":1,\"PageSize\":10,}", "\xff\xfe"}) {
        const auto answer = station_.Connect()->Post(kReport, body, "application/json");
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, 400) << body;
        EXPECT_EQ(json::parse(answer->body)["ErrorCode"], 1);
    }
}

TEST_F(StationReport, OtherReportIsUnknown)
{
    const json answer = station_.Post("/api/v1/visitors/report", {{"PageIndex", 1}, {"PageSize", 10}});
    EXPECT_EQ(answer["ErrorModule"], 24);
    EXPECT_EQ(answer["ErrorCode"], 3);
}

TEST_F(StationReport, CamerasAreListedWithTheirPlaces)
{
    const auto answer = station_.Connect()->Get("/api/v1/cameras");
    ASSERT_TRUE(answer);
    const json cameras = json::parse(answer->body)["Cameras"];
    ASSERT_EQ(cameras.size(), 12u);
    EXPECT_EQ(cameras[0], (json{{"Id", 1}, {"Name", "Gate North"}, {"Place", "Main entrance, lane 1"}}));
}
