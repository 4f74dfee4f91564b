#include "StationFixture.h"

#include <chrono>
#include <string>
#include <thread>
#include <vector>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kPath[] = "/api/v1/cameras";

class StationFaults : public StationFixture
{
protected:
    httplib::Result Get(const std::string& path = kPath) { return station_.Connect()->Get(path); }
};

}  // namespace

TEST_F(StationFaults, StatusHitsOnceAfterTheRequestsThatAreLetThrough)
{
    SetFault({{"Path", kPath}, {"Kind", "status"}, {"Status", 503}, {"After", 2}, {"Count", 1}});
    const auto client = station_.Connect();
    std::vector<int> statuses;
    for (int i = 0; i < 4; ++i)
        statuses.push_back(client->Get(kPath)->status);
    EXPECT_EQ(statuses, (std::vector<int>{200, 200, 503, 200}));
}

TEST_F(StationFaults, CountOfMinusOneHitsAllFurtherRequests)
{
    SetFault({{"Path", kPath}, {"Kind", "status"}, {"Status", 500}});
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Get()->status, 500);
    station_.ClearFaults();
    EXPECT_EQ(Get()->status, 200);
}

TEST_F(StationFaults, OtherPathsAreLeftAlone)
{
    SetFault({{"Path", kPath}, {"Kind", "status"}, {"Status", 500}});
    EXPECT_EQ(Get("/health")->status, 200);
}

TEST_F(StationFaults, FinalSlashOrStarStandsForAnyRest)
{
    SetFault({{"Path", "/pictures/"}, {"Kind", "status"}, {"Status", 500}, {"Count", 1}});
    SetFault({{"Path", "/hea*"}, {"Kind", "status"}, {"Status", 502}, {"Count", 1}});
    EXPECT_EQ(Get("/pictures/event-1.jpg")->status, 500);
    EXPECT_EQ(Get("/health")->status, 502);
}

TEST_F(StationFaults, CutEndsTheBodyAndTheConnection)
{
    SetFault({{"Path", "/pictures/event-1.jpg"}, {"Kind", "cut"}, {"CutAt", 1000}, {"Count", 1}});
    std::string body;
    std::string announced;
    const auto answer = station_.Connect()->Get(
        "/pictures/event-1.jpg",
        [&announced](const httplib::Response& response) {
            announced = response.get_header_value("Content-Length");
            return true;
        },
        [&body](const char* data, std::size_t size) {
            body.append(data, size);
            return true;
        });
    EXPECT_FALSE(answer);
    EXPECT_EQ(body.size(), 1000u);
    EXPECT_GT(std::stoi(announced), 1000);
    EXPECT_EQ(station_.Requests()["Paths"]["/pictures/event-1.jpg"]["Bytes"], 1000);
    EXPECT_EQ(Get("/pictures/event-1.jpg")->status, 200);
}

TEST_F(StationFaults, CutBehindTheEndChangesNothing)
{
    SetFault({{"Path", kPath}, {"Kind", "cut"}, {"CutAt", 1000000}});
    EXPECT_EQ(Get()->status, 200);
}

TEST_F(StationFaults, GarbageIsAnAnswerThatIsNoJson)
{
    SetFault({{"Path", kPath}, {"Kind", "garbage"}, {"Count", 1}});
    const auto answer = Get();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200);
    EXPECT_FALSE(answer->body.empty());
    EXPECT_TRUE(json::parse(answer->body, nullptr, false).is_discarded());
}

TEST_F(StationFaults, ResetGivesNoAnswer)
{
    SetFault({{"Path", kPath}, {"Kind", "reset"}, {"Count", 1}});
    EXPECT_FALSE(Get());
    EXPECT_EQ(Get()->status, 200);
}

TEST_F(StationFaults, DelaysAddUpAndTheAnswerIsGood)
{
    SetFault({{"Path", kPath}, {"Kind", "delay"}, {"DelayMs", 60}, {"Count", 1}});
    SetFault({{"Path", kPath}, {"Kind", "delay"}, {"DelayMs", 40}, {"Count", 1}});
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(Get()->status, 200);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(100));
}

TEST_F(StationFaults, StopDoesNotWaitForADelay)
{
    SetFault({{"Path", kPath}, {"Kind", "delay"}, {"DelayMs", 600000}});
    std::thread client([this] { Get(); });
    while (station_.RequestCount(kPath) == 0)
        std::this_thread::yield();
    EXPECT_EQ(station_.Stop(), 0);
    client.join();
}

TEST_F(StationFaults, RequestsAreCountedByPathWithoutTheirQuery)
{
    const auto client = station_.Connect();
    const std::size_t size = client->Get("/health")->body.size();
    client->Get("/health?again");
    EXPECT_EQ(station_.Requests()["Paths"]["/health"], (json{{"Count", 2}, {"Bytes", 2 * size}}));
    station_.ResetRequests();
    EXPECT_TRUE(station_.Requests()["Paths"].empty());
}

TEST_F(StationFaults, FaultThatMakesNoSenseIsRefused)
{
    for (const json& fault :
         {json{{"Path", kPath}}, json{{"Kind", "explode"}}, json{{"Kind", 1}},
          json{{"Kind", "status"}, {"Status", 99}}, json{{"Kind", "delay"}, {"DelayMs", -1}},
          json{{"Kind", "cut"}, {"CutAt", "all"}}, json{{"Kind", "cut"}, {"Path", 5}},
          json{{"Kind", "cut"}, {"Count", -2}}, json::array()}) {
        const json answer = station_.Post("/control/faults", fault);
        EXPECT_EQ(answer["status"], 400) << fault;
        EXPECT_EQ(answer["ErrorCode"], 1) << fault;
    }
}
