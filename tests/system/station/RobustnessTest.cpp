#include "StationFixture.h"

#include <string>
#include <thread>
#include <vector>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kReport[] = "/api/v1/events/report";

class StationRobustness : public StationFixture
{
protected:
    void TearDown() override
    {
        // Whatever was sent, the station goes on.
        const auto answer = station_.Connect()->Get("/health");
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, 200);
        EXPECT_EQ(station_.Stop(), 0);
    }
};

}  // namespace

TEST_F(StationRobustness, UnknownPathIsNotFoundAndOtherMethodNotAllowed)
{
    const auto client = station_.Connect();
    for (const char* path : {"/", "/nothing", "/api/v1/", "/api/v1/events/report/", "/health/", "//health"}) {
        const auto answer = client->Get(path);
        ASSERT_TRUE(answer) << path;
        EXPECT_EQ(answer->status, 404) << path;
        EXPECT_EQ(json::parse(answer->body)["ErrorCode"], 4);
    }
    EXPECT_EQ(client->Get(kReport)->status, 405);
    EXPECT_EQ(client->Post("/health", "{}", "application/json")->status, 405);
    EXPECT_EQ(client->Delete("/api/v1/cameras")->status, 405);
    EXPECT_EQ(client->Put(kReport, "{}", "application/json")->status, 405);
}

TEST_F(StationRobustness, BodyAboveTheBoundIsRefused)
{
    const std::string body(65u << 20, ' ');
    const auto answer = station_.Connect()->Post(kReport, body, "application/json");
    // The station may close before it has read all; it never takes the body in.
    EXPECT_EQ(answer ? answer->status : 413, 413);
}

TEST_F(StationRobustness, ConnectionIsUsableAfterEveryRefusal)
{
    const auto client = station_.Connect();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(client->Post(kReport, "{", "application/json")->status, 400);
        EXPECT_EQ(client->Post("/nothing", std::string(100000, 'x'), "application/json")->status, 404);
        EXPECT_EQ(client->Get("/health")->status, 200);
    }
    EXPECT_EQ(station_.Requests()["Connections"], 2);
}

TEST_F(StationRobustness, DeeplyNestedConditionIsAnswered)
{
    const std::string deep =
        R"({"PageIndex":1,"PageSize":1,"X":)" + std::string(200000, '[') + std::string(200000, ']') + "}";
    const auto answer = station_.Connect()->Post(kReport, deep, "application/json");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200);
}

TEST_F(StationRobustness, TextFilterIsNoWayIntoTheStore)
{
    const json answer = station_.Post(kReport, {{"PageIndex", 1},
                                                {"PageSize", 10},
                                                {"Text", "'; DROP TABLE events; --"},
                                                {"EventTypes", {"x') OR 1=1 --"}}});
    EXPECT_EQ(answer["ErrorCode"], 0);
    EXPECT_TRUE(answer["Sheets"][0]["Rows"].empty());
    EXPECT_EQ(station_.Post(kReport, {{"PageIndex", 1}, {"PageSize", 400}})["Sheets"][0]["Rows"].size(),
              400u);
}

TEST_F(StationRobustness, ThousandCamerasInAConditionAreAnswered)
{
    json condition = {{"PageIndex", 1}, {"PageSize", 1}, {"CameraIds", json::array()}};
    for (int i = 0; i < 1000; ++i)
        condition["CameraIds"].push_back(i);
    EXPECT_EQ(station_.Post(kReport, condition)["ErrorCode"], 0);
}

TEST_F(StationRobustness, MoreChoicesThanTheStoreTakesAreRefused)
{
    json condition = {{"PageIndex", 1}, {"PageSize", 1}, {"CameraIds", json::array()}};
    for (int i = 0; i < 1001; ++i)
        condition["CameraIds"].push_back(i);
    const json answer = station_.Post(kReport, condition);
    EXPECT_EQ(answer["ErrorModule"], 24);
    EXPECT_EQ(answer["ErrorCode"], 1);
}

TEST_F(StationRobustness, ManyConnectionsAtOnceAreServed)
{
    constexpr int kClients = 60;
    std::vector<std::unique_ptr<httplib::Client>> clients;
    for (int i = 0; i < kClients; ++i) {
        clients.push_back(station_.Connect());
        ASSERT_EQ(clients.back()->Get("/health")->status, 200);
    }
    // All of them are open now, and all of them still work.
    for (const auto& client : clients)
        EXPECT_EQ(client->Get("/health")->status, 200);
    EXPECT_EQ(station_.Requests()["Connections"], kClients + 1);
}

TEST_F(StationRobustness, MoreConnectionsThanThreadsMakeIdleOnesGiveWay)
{
    constexpr int kClients = 300;
    std::vector<std::unique_ptr<httplib::Client>> clients;
    for (int i = 0; i < kClients; ++i) {
        clients.push_back(station_.Connect());
        const auto answer = clients.back()->Get("/health");
        ASSERT_TRUE(answer) << i;
        ASSERT_EQ(answer->status, 200) << i;
    }
}
