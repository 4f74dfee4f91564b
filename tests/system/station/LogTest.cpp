#include "StationFixture.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

using nlohmann::json;
using namespace SystemTest;
namespace fs = std::filesystem;

namespace {

constexpr char kGather[] = "/api/v1/logs/gather";

class StationLogs : public StationFixture
{
protected:
    json Post(const json& condition) { return station_.Post(kGather, condition); }
    // Orders, and polls with the same condition until there is another state than working.
    json Gathered(json condition)
    {
        const json order = Post(condition);
        EXPECT_EQ(order["ErrorCode"], 0) << order;
        condition["FileGuid"] = order["FileGuid"];
        json answer = Post(condition);
        while (answer["State"] == "working")
            answer = Post(condition);
        return answer;
    }
    httplib::Result Get(const std::string& path, const httplib::Headers& headers = {})
    {
        return station_.Connect()->Get(path, headers);
    }
    // The lines of a log without its head.
    std::vector<std::string> Lines(const std::string& path)
    {
        const auto answer = Get(path);
        EXPECT_EQ(answer->status, 200) << path;
        EXPECT_EQ(answer->get_header_value("Content-Type"), "text/plain; charset=utf-8");
        std::vector<std::string> lines;
        std::size_t begin = answer->body.find('\n') + 1;
        while (begin < answer->body.size()) {
            const std::size_t end = answer->body.find('\n', begin);
            lines.push_back(answer->body.substr(begin, end - begin));
            begin = end + 1;
        }
        return lines;
    }
    std::size_t EventsOf(const json& condition)
    {
        json page = condition;
        page["PageIndex"] = 1;
        page["PageSize"] = 1000;
        return station_.Post("/api/v1/events/report", page)["Sheets"][0]["Rows"].size();
    }
    void ExpectRefused(const json& condition, int code, const std::string& word)
    {
        const json answer = Post(condition);
        EXPECT_EQ(answer["status"], 200) << condition;
        EXPECT_EQ(answer["ErrorModule"], 24) << condition;
        EXPECT_EQ(answer["ErrorCode"], code) << condition;
        EXPECT_NE(answer["ErrorText"].get<std::string>().find(word), std::string::npos) << answer;
    }
};

}  // namespace

TEST_F(StationLogs, EachCameraHasItsLogAndTheStationOne)
{
    const json ready = Gathered({{"CameraIds", {3, 1, 777}}});
    EXPECT_EQ(ready["State"], "ready");
    ASSERT_EQ(ready["Files"].size(), 3u);
    const std::string first = ready["Files"][0];
    const std::string folder = first.substr(0, first.rfind('/') + 1);
    EXPECT_EQ(ready["Files"],
              (json{folder + "camera-1.log", folder + "camera-3.log", folder + "station.log"}));
    EXPECT_EQ(Lines(first).size(), EventsOf({{"CameraIds", {1}}}));
    EXPECT_NE(Get(first)->body.find("Camera 1, Gate North"), std::string::npos);
    const std::vector<std::string> station = Lines(folder + "station.log");
    ASSERT_EQ(station.size(), 2u);
    EXPECT_EQ(station[0], "camera-1.log  Gate North: " + std::to_string(Lines(first).size()) + " events");
}

TEST_F(StationLogs, LinesAreOfTheTimeThatIsAskedFor)
{
    const json condition = {
        {"CameraIds", {2}}, {"BeginTime", "2026-01-10T00:00:00Z"}, {"EndTime", "2026-01-17T00:00:00Z"}};
    const std::vector<std::string> lines = Lines(Gathered(condition)["Files"][0]);
    EXPECT_EQ(lines.size(), EventsOf(condition));
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end()));
    EXPECT_GE(lines.front(), "2026-01-10");
    EXPECT_LT(lines.back(), "2026-01-17");
    EXPECT_NE(lines.front().find(", level "), std::string::npos);
}

TEST_F(StationLogs, AllCamerasAreMeantIfNoneIsNamed)
{
    EXPECT_EQ(Gathered(json::object())["Files"].size(), 13u);
    EXPECT_EQ(Gathered({{"CameraIds", json::array()}})["Files"].size(), 13u);
}

TEST_F(StationLogs, PollsAreWorkingUntilTheyAreUsedUp)
{
    json condition = {{"CameraIds", {1}}, {"ReadyAfterPolls", 3}};
    condition["FileGuid"] = Post(condition)["FileGuid"];
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Get("/api/v1/logs/" + condition["FileGuid"].get<std::string>() + "/camera-1.log")->status,
                  404);
        const json answer = Post(condition);
        EXPECT_EQ(answer["State"], "working");
        EXPECT_FALSE(answer.contains("Files"));
    }
}

TEST_F(StationLogs, OrderedFailureIsToldAfterItsPolls)
{
    json condition = {{"FailAfterPolls", 1}};
    condition["FileGuid"] = Post(condition)["FileGuid"];
    EXPECT_EQ(Post(condition)["State"], "working");
    const json failed = Post(condition);
    EXPECT_EQ(failed["State"], "failed");
    EXPECT_NE(failed["ErrorText"], "");
    EXPECT_TRUE(fs::is_empty(station_.DataFolder() + "/gathered"));
}

TEST_F(StationLogs, CamerasThatTheSiteDoesNotHaveAndUnknownGuidsAreRefused)
{
    ExpectRefused({{"CameraIds", {13, -1, 0}}}, 1, "camera");
    for (const std::string& guid : {std::string("none"), std::string(".."), std::string(100000, 'a'),
                                    std::string("5d2f0a4e-7c11-4b7e-9d5b-000000000009")})
        ExpectRefused({{"FileGuid", guid}}, 4, "FileGuid");
}

TEST_F(StationLogs, ReportIsNoLog)
{
    const json report =
        station_.Post("/api/v1/events/generated-report", {{"FileType", 1}, {"ReadyAfterPolls", 0}});
    ExpectRefused({{"FileGuid", report["ServerGenerate"]["TaskId"]}}, 4, "FileGuid");
}

TEST_F(StationLogs, ConditionThatMakesNoSenseIsRefusedInWords)
{
    for (const auto& [condition, word] :
         std::vector<std::pair<json, std::string>>{{json::array(), "object"},
                                                   {json("x"), "object"},
                                                   {{{"CameraIds", 1}}, "CameraIds"},
                                                   {{{"CameraIds", {"1"}}}, "CameraIds"},
                                                   {{{"CameraIds", std::vector<int>(1001, 1)}}, "CameraIds"},
                                                   {{{"BeginTime", 5}}, "BeginTime"},
                                                   {{{"EndTime", "2026-13-01"}}, "EndTime"},
                                                   {{{"FileGuid", 7}}, "FileGuid"},
                                                   {{{"ReadyAfterPolls", 1e99}}, "ReadyAfterPolls"},
                                                   {{{"FailAfterPolls", -2}}, "FailAfterPolls"}})
        ExpectRefused(condition, 1, word);
    EXPECT_EQ(station_.Connect()->Post(kGather, "", "application/json")->status, 400);
}

TEST_F(StationLogs, NoNameLeadsToAnotherFile)
{
    const std::string log = Gathered({{"CameraIds", {1}}})["Files"][0];
    const std::string folder = log.substr(0, log.rfind('/') + 1);
    for (const char* name : {"..", ".", "%2e%2e", "..%2F..%2Fstation.db", "..%5C..%5Cstation.db",
                             "camera-2.log", "%00", "camera-1.log%00", "camera-1.log/", "", "%ff"}) {
        const auto answer = Get(folder + name);
        ASSERT_TRUE(answer) << name;
        EXPECT_EQ(answer->status, 404) << name;
    }
    for (const char* path : {"/api/v1/logs/../camera-1.log", "/api/v1/logs/%2e%2e/station.db",
                             "/api/v1/logs/none/camera-1.log", "/api/v1/logs//camera-1.log"})
        EXPECT_EQ(Get(path)->status, 404) << path;
}

TEST_F(StationLogs, PartOfALogCanBeAskedFor)
{
    const std::string log = Gathered({{"CameraIds", {1}}})["Files"][0];
    const auto whole = Get(log);
    const auto part = Get(log, {{"Range", "bytes=10-19"}});
    EXPECT_EQ(part->status, 206);
    EXPECT_EQ(part->body, whole->body.substr(10, 10));
}

TEST_F(StationLogs, TwentyClientsAtOnceEachGetTheirLogs)
{
    std::vector<std::thread> clients;
    for (int camera = 1; camera <= 20; ++camera)
        clients.emplace_back([this, camera] {
            const json ready = Gathered({{"CameraIds", {camera % 12 + 1}}});
            EXPECT_EQ(ready["State"], "ready");
            ASSERT_EQ(ready["Files"].size(), 2u);
            EXPECT_EQ(Lines(ready["Files"][0]).size(), EventsOf({{"CameraIds", {camera % 12 + 1}}}));
        });
    for (std::thread& client : clients)
        client.join();
}
