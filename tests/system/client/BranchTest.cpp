#include "ClientFixture.h"

#include <gtest/gtest.h>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <filesystem>
#include <fstream>

using nlohmann::json;
using namespace SystemTest;

namespace {

std::string Content(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string Sha256(const std::string& path)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(QByteArray::fromStdString(Content(path)));
    return hash.result().toHex().toStdString();
}

bool Says(const ClientRun::Result& result, const std::string& words)
{
    return result.output.find(words) != std::string::npos;
}

// The kinds of exports beside the report whose rows are written here.
class ClientBranches : public ClientFixture
{
protected:
    // A report that the station generates.
    json Generated(const std::string& name, int type, json condition = json::object())
    {
        json request = ReportRequest(client_, name, type, "none", 60);
        json& call = Section(request, "ExportFileParam");
        json whole = json::parse(call["RequestCondition"].get<std::string>());
        whole["FileType"] = type;
        whole.update(condition);
        call["RequestAPI"] = "/api/v1/events/generated-report";
        call["RequestCondition"] = whole.dump();
        return request;
    }

    json Logs(const std::string& name, const json& condition)
    {
        json request = ReportRequest(client_, name, 3, "none", 1);
        request["FileExportRequest"]["FileExportType"] = 3;
        Section(request, "ExportFileParam")["RequestAPI"] = "/api/v1/logs/gather";
        Section(request, "ExportFileParam")["RequestCondition"] = condition.dump();
        return request;
    }

    json DockFiles(const std::string& name, const std::vector<std::pair<int, std::string>>& files)
    {
        json request = ReportRequest(client_, name, 3, "none", 1);
        request["FileExportRequest"]["FileExportType"] = 4;
        json& call = Section(request, "ExportFileParam");
        call["RequestAPI"] = "";
        for (const auto& [id, file] : files)
            call["DeviceIdList"].push_back({{"DeviceId", 1}, {"FileID", id}, {"FileName", file}});
        return request;
    }

    json AsEvidence(json request, const json& param) const
    {
        request["FileExportPurpose"] = 1;
        request["EvidenceParam"] = param;
        return request;
    }

    std::string Made(const std::string& below) const { return client_.ExportFolder() + below; }
};

}  // namespace

TEST_F(ClientBranches, GeneratedReportsArriveInEveryFormat)
{
    const auto result = client_.RunRequests(
        {Generated("Book", 0), Generated("Table", 1), Generated("Page", 2), Generated("Text", 3)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(Content(Made("Book/Book.xlsx")).substr(0, 2), "PK");
    EXPECT_EQ(Content(Made("Table/Table.csv")).substr(0, 3), "\xEF\xBB\xBF");
    EXPECT_EQ(Content(Made("Page/Page.pdf")).substr(0, 5), "%PDF-");
    EXPECT_EQ(FilesBelow(Made("Page")), std::vector<std::string>{"Page.pdf"});
    EXPECT_FALSE(Content(Made("Text/Text.txt")).empty());
    EXPECT_EQ(station_.RequestCount("/api/v1/generated/state"), 8) << "the second poll finds it";
    EXPECT_EQ(station_.RequestCount("/api/v1/generated/delete-cache"), 4);
}

TEST_F(ClientBranches, GeneratedReportThatIsThereAtOnceIsNotAskedAfter)
{
    const auto result = client_.RunRequests({Generated("Table", 1, {{"ReadyAfterPolls", 0}})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(station_.RequestCount("/api/v1/generated/state"), 0);
    EXPECT_EQ(station_.RequestCount("/api/v1/generated/delete-cache"), 1);
}

TEST_F(ClientBranches, PollsThatFindNoServerGoOnUntilItIsBack)
{
    SetFault({{"Path", "/api/v1/generated/state"}, {"Kind", "reset"}, {"Count", 1}});
    const auto result = client_.RunRequests({Generated("Table", 1)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_TRUE(Exists(Made("Table/Table.csv")));
}

TEST_F(ClientBranches, GenerationThatFailsEndsTheExportWithItsReason)
{
    const auto result = client_.RunRequests({Generated("Table", 1, {{"FailAfterPolls", 1}})});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_TRUE(Says(result, "Table: failed: ")) << result.output;
    EXPECT_TRUE(FilesBelow(Made("Table")).empty());
}

TEST_F(ClientBranches, StopDuringTheGenerationReachesTheStation)
{
    client_.StartRequests({Generated("Table", 1, {{"ReadyAfterPolls", 1000}})});
    ASSERT_TRUE(station_.WaitForRequests("/api/v1/generated/state", 1));
    client_.Interrupt();
    const auto result = client_.Finish();
    EXPECT_TRUE(Says(result, "Table: stopped")) << result.output;
    EXPECT_EQ(station_.RequestCount("/api/v1/generated/operate"), 1);
    EXPECT_TRUE(FilesBelow(Made("Table")).empty());
}

TEST_F(ClientBranches, InterruptThatDiscardsDeletesTheExportWithItsFolder)
{
    SetFault({{"Path", "/api/v1/events/report"}, {"Kind", "delay"}, {"DelayMs", 300}, {"Count", -1}});
    client_.UseOption("--discard");
    client_.StartRequests({ReportRequest(client_, "Gone", 1, "none", 400)});
    ASSERT_TRUE(client_.WaitForOutput("[1-9] page"));
    ASSERT_TRUE(Exists(Made("Gone")));
    client_.Interrupt();
    const auto result = client_.Finish();
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_TRUE(Says(result, "Gone: deleted")) << result.output;
    EXPECT_FALSE(Exists(Made("Gone")));
}

TEST_F(ClientBranches, GatheredLogsLieInTheFolder)
{
    const auto result = client_.RunRequests({Logs("Logs", {{"CameraIds", {1, 2}}, {"ReadyAfterPolls", 2}})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(FilesBelow(Made("Logs")),
              (std::vector<std::string>{"camera-1.log", "camera-2.log", "station.log"}));
    EXPECT_NE(Content(Made("Logs/camera-2.log")).find("Camera 2"), std::string::npos);
}

TEST_F(ClientBranches, LogsOfACameraThatIsNotThereFailWithTheStationsReason)
{
    const auto result = client_.RunRequests({Logs("Logs", {{"CameraIds", {99}}})});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_TRUE(Says(result, "Logs: failed: ")) << result.output;
    EXPECT_TRUE(FilesBelow(Made("Logs")).empty());
}

TEST_F(ClientBranches, FilesOfADockStationArriveUnderTheirNames)
{
    const auto result = client_.RunRequests({DockFiles("Dock", {{1001, "one.jpg"}, {1004, "times.txt"}})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(FilesBelow(Made("Dock")), (std::vector<std::string>{"one.jpg", "times.txt"}));
    EXPECT_EQ(Content(Made("Dock/one.jpg")).substr(0, 2), "\xFF\xD8");
}

TEST_F(ClientBranches, FailedFilesAreListedAndTheOthersArrive)
{
    const auto result =
        client_.RunRequests({DockFiles("Dock", {{1001, "one.jpg"}, {4711, "two.jpg"}, {4712, "three.jpg"}})});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_TRUE(Says(result, "Dock: failed: ")) << result.output;
    EXPECT_TRUE(Says(result, "  three.jpg failed: ")) << result.output;
    EXPECT_TRUE(Says(result, "  two.jpg failed: ")) << result.output;
    EXPECT_FALSE(Says(result, "one.jpg failed")) << result.output;
    EXPECT_TRUE(Exists(Made("Dock/one.jpg")));
}

TEST_F(ClientBranches, EvidenceIsRegisteredWithTheMarksOfItsFiles)
{
    const json param = {{"CaseNumber", "7"}, {"Title", "Gate"}, {"Folder", Made("Evidence/")}};
    const auto result =
        client_.RunRequests({AsEvidence(ReportRequest(client_, "Evidence", 1, "none", 60), param)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const json list = station_.Get("/api/v1/evidence?case=7");
    ASSERT_EQ(list["Evidence"].size(), 1u) << list.dump();
    const std::string id = list["Evidence"][0]["EvidenceId"];
    const json entry = station_.Get("/api/v1/evidence/" + id);
    ASSERT_EQ(entry["Files"].size(), 1u) << entry.dump();
    EXPECT_EQ(entry["Files"][0]["Name"], "Evidence.csv");
    EXPECT_EQ(entry["Files"][0]["Sha256"], Sha256(Made("Evidence/Evidence.csv")));
    EXPECT_EQ(entry["Files"][0]["Bytes"], std::filesystem::file_size(Made("Evidence/Evidence.csv")));
}

TEST_F(ClientBranches, EvidenceOfAPackedExportIsTheArchive)
{
    json request = AsEvidence(ReportRequest(client_, "Evidence", 1, "none", 60),
                              {{"CaseNumber", "8"}, {"Title", "Gate"}, {"Folder", Made("Evidence/")}});
    Section(request, "WriteFileCondition")["IsNeedCompressZip"] = true;
    const auto result = client_.RunRequests({request});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const std::string id = station_.Get("/api/v1/evidence?case=8")["Evidence"][0]["EvidenceId"];
    EXPECT_EQ(station_.Get("/api/v1/evidence/" + id)["Files"][0]["Name"], "Evidence.zip");
}

TEST_F(ClientBranches, EvidenceThatTheServiceRefusesFailsAndKeepsItsFiles)
{
    const auto result = client_.RunRequests({AsEvidence(ReportRequest(client_, "Evidence", 1, "none", 60),
                                                        {{"Title", "a case without a number"}})});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_TRUE(Says(result, "Evidence: failed: ")) << result.output;
    EXPECT_TRUE(Exists(Made("Evidence/Evidence.csv")));
    EXPECT_TRUE(station_.Get("/api/v1/evidence")["Evidence"].empty());
}

TEST_F(ClientBranches, ArchivesOfOneNameAreMadeOneAfterTheOther)
{
    std::vector<json> requests;
    for (const char* folder : {"First", "Second", "Third"}) {
        json request = ReportRequest(client_, "Same", 1, "none", 60);
        Section(request, "WriteFileCondition")["IsNeedCompressZip"] = true;
        Section(request, "WriteFileCondition")["FolderName"] = folder;
        requests.push_back(request);
    }
    const auto result = client_.RunRequests(requests);
    ASSERT_EQ(result.exit_code, 0) << result.output;
    for (const char* folder : {"First", "Second", "Third"})
        EXPECT_EQ(FilesBelow(Made(folder)), std::vector<std::string>{"Same.zip"}) << folder;
}

TEST_F(ClientBranches, LeftoverOfAKilledClientDoesNotGetIntoAnArchive)
{
    const std::string scratch = client_.Path("data/Public/Fetchyard/");
    ASSERT_TRUE(QDir().mkpath(QString::fromStdString(scratch)));
    std::ofstream(scratch + "Same.zip") << "half an archive";
    json request = ReportRequest(client_, "Same", 1, "none", 60);
    Section(request, "WriteFileCondition")["IsNeedCompressZip"] = true;
    const auto result = client_.RunRequests({request});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(Content(Made("Same/Same.zip")).substr(0, 2), "PK");
    EXPECT_TRUE(FilesBelow(scratch).empty());
}

TEST_F(ClientBranches, WorkOfAClientThatLivesIsLeftAlone)
{
    SetFault({{"Path", "/api/v1/events/report"}, {"Kind", "delay"}, {"DelayMs", 300}, {"Count", -1}});
    client_.StartRequests({ReportRequest(client_, "Slow", 1, "none", 400)});
    ASSERT_TRUE(client_.WaitForOutput("[1-9] page"));
    const std::string work = client_.Path("data/Public/Fetchyard/Other.zip");
    std::ofstream(work) << "being made";
    ClientRun beside;
    beside.UseStation(Address());
    beside.UseData(client_.Path("data"));
    EXPECT_EQ(beside.RunRequests({DockFiles("Dock", {{1001, "one.jpg"}})}).exit_code, 0);
    EXPECT_TRUE(Exists(work));
    client_.Interrupt();
    client_.Finish();
}
