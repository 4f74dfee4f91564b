#include "ClientFixture.h"

#include <gtest/gtest.h>
#include <QDir>

using nlohmann::json;
using namespace SystemTest;

namespace {

class ClientStop : public ClientFixture
{
};

}  // namespace

TEST_F(ClientStop, InterruptStopsARunningExportAndKeepsItsRows)
{
    SetFault({{"Path", "/api/v1/events/report"}, {"Kind", "delay"}, {"DelayMs", 300}, {"Count", -1}});
    client_.StartRequests({ReportRequest(client_, "Stopped", 1, "none", 400)});
    ASSERT_TRUE(client_.WaitForOutput("[1-9] page"));
    client_.Interrupt();
    const auto result = client_.Finish();
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.output.find("Stopped: stopped"), std::string::npos) << result.output;
    EXPECT_TRUE(Exists(client_.ExportFolder() + "Stopped/Stopped.csv"));
}

TEST_F(ClientStop, WorkbookThatCantBeCreatedIsRetriedUntilAStopAndTheClientSaysSo)
{
    ASSERT_TRUE(
        QDir().mkpath(QString::fromStdString(client_.ExportFolder() + "Blocked/Blocked.xlsx/inside")));
    client_.StartRequests({ReportRequest(client_, "Blocked", 0, "none", 10)});
    ASSERT_TRUE(client_.WaitForOutput("trouble: "));
    client_.Interrupt();
    const auto result = client_.Finish();
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.output.find("Blocked.xlsx"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("Blocked: stopped"), std::string::npos) << result.output;
}

TEST_F(ClientStop, WaitingTasksAreStoppedToo)
{
    SetFault({{"Path", "/api/v1/events/report"}, {"Kind", "delay"}, {"DelayMs", 300}, {"Count", -1}});
    std::vector<json> requests;
    for (int i = 1; i <= 8; ++i)
        requests.push_back(ReportRequest(client_, "Export " + std::to_string(i), 1, "none", 400));
    client_.StartRequests(requests);
    ASSERT_TRUE(client_.WaitForOutput("[1-9] page"));
    client_.Interrupt();
    const auto result = client_.Finish();
    for (int i = 1; i <= 8; ++i)
        EXPECT_NE(result.output.find("Export " + std::to_string(i) + ": stopped"), std::string::npos)
            << result.output;
}
