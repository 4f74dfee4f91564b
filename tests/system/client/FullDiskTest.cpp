#include "ClientFixture.h"

#include <gtest/gtest.h>

using nlohmann::json;
using namespace SystemTest;

namespace {

// Exports onto a small file system of their own, in a mount namespace that ends with the client. What is
// there at the end is listed, since nobody else can see it.
class ClientFullDisk : public ClientFixture
{
protected:
    ClientRun::Result RunOnSmallDisk(const json& request, const QString& size)
    {
        const QString script =
            "mount -t tmpfs -o size=%1 small \"$0\" && { \"$@\"; code=$?; find \"$0\" -type f; exit $code; }";
        client_.PutInFront({"unshare", "--user", "--map-root-user", "--mount", "sh", "-c", script.arg(size),
                            QString::fromStdString(client_.ExportFolder())});
        return client_.RunRequests({request});
    }
};

}  // namespace

TEST_F(ClientFullDisk, CsvThatDidNotReachTheDiskFailsAndLeavesNoReport)
{
    const auto result = RunOnSmallDisk(ReportRequest(client_, "Full", 1, "none", 400), "16k");
    EXPECT_EQ(result.exit_code, 1) << result.output;
    EXPECT_EQ(result.output.find("out/Full/Full.csv\n"), std::string::npos) << result.output;
}

TEST_F(ClientFullDisk, TextReportThatDidNotReachTheDiskFails)
{
    const auto result = RunOnSmallDisk(ReportRequest(client_, "Full", 3, "none", 400), "16k");
    EXPECT_EQ(result.exit_code, 1) << result.output;
    EXPECT_NE(result.output.find("Full: failed"), std::string::npos) << result.output;
}

TEST_F(ClientFullDisk, WorkbookThatDidNotReachTheDiskIsToldAndLeavesNoReport)
{
    const auto result = RunOnSmallDisk(ReportRequest(client_, "Full", 0, "none", 400), "16k");
    EXPECT_EQ(result.exit_code, 1) << result.output;
    EXPECT_NE(result.output.find("trouble: "), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("Full.xlsx is missing"), std::string::npos) << result.output;
}

TEST_F(ClientFullDisk, PicturesThatDoNotFitLeaveNoHalfFile)
{
    json request = ReportRequest(client_, "Full", 1, "none", 5);
    for (int i = 1; i <= 20; ++i)
        Section(request, "DownloadFiles")["ImageDownload"].push_back(
            {{"Imageurl", "/pictures/event-" + std::to_string(i) + ".jpg"}});
    const auto result = RunOnSmallDisk(request, "200k");
    EXPECT_EQ(result.exit_code, 1) << result.output;
    EXPECT_NE(result.output.find("20.jpg is missing"), std::string::npos) << result.output;
    EXPECT_EQ(result.output.find("is no picture"), std::string::npos) << result.output;
}
