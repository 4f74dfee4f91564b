#include "ClientFixture.h"

#include <gtest/gtest.h>
#include <QFile>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kSearchPath[] = "/api/v1/persons/report";

class ClientPersons : public ClientFixture
{
protected:
    static json Request(const std::string& name, const json& condition)
    {
        json search;
        search["RequestMethod"] = "POST";
        search["RequestAPI"] = kSearchPath;
        search["RequestCondition"] = condition.dump();
        const json node = {
            {"PicDownloadRequestNode", search}, {"ZipEncodingPassword", "s3cret"}, {"ZipName", name}};
        return {{"FileExportRequest", {{"FileExportType", 2}, {"PersonExportPicNode", node}}}};
    }

    static json& Server(json& request)
    {
        return request["FileExportRequest"]["PersonExportPicNode"]["PicDownloadRequestNode"];
    }

    // What the station finds, as names of the files of an archive.
    std::set<std::string> FilesOfSearch(json condition) const
    {
        condition["PageIndex"] = 1;
        condition["PageSize"] = 10000;
        std::set<std::string> names;
        const json page = station_.Post(kSearchPath, condition);
        for (const json& person : page["Persons"])
            for (const json& picture : person["Pictures"])
                names.insert(picture["Title"].get<std::string>() + ".jpeg");
        return names;
    }

    ClientRun::Result RunEnciphered(const json& request)
    {
        const std::string path = client_.Path("request.json");
        QFile file(QString::fromStdString(path));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromStdString(request.dump()));
        file.close();
        return client_.Run({"run", "--encipher", QString::fromStdString(path)});
    }

    std::string Archive(const std::string& name) const
    {
        return client_.ExportFolder() + name + "/" + name + ".zip";
    }

    // Folders and archives of guids, which a run leaves only where it says so.
    std::vector<std::string> Scratch() const
    {
        std::vector<std::string> files = FilesBelow(client_.ExportFolder());
        files.erase(
            std::remove_if(files.begin(), files.end(),
                           [](const std::string& file) { return file.find(".zip") == file.size() - 4; }),
            files.end());
        return files;
    }
};

struct Archiver
{
    int exit_code = -1;
    std::string output;
};

Archiver RunArchiver(const QStringList& words)
{
    QProcess archiver;
    archiver.start("7za", words);
    archiver.waitForFinished(-1);
    return {archiver.exitCode(), archiver.readAllStandardOutput().toStdString()};
}

std::set<std::string> NamesIn(const std::string& archive)
{
    const std::string text =
        RunArchiver({"l", "-slt", "-ba", "-sccUTF-8", QString::fromStdString(archive)}).output;
    std::set<std::string> names;
    const std::string key = "Path = ";
    for (auto at = text.find(key); at != std::string::npos; at = text.find(key, at + 1))
        names.insert(text.substr(at + key.size(), text.find('\n', at) - at - key.size()));
    return names;
}

}  // namespace

TEST_F(ClientPersons, ArchiveHoldsEveryPictureAndOpensWithItsPasswordAlone)
{
    const auto result = client_.RunRequests({Request("Everybody", {{"PageIndex", 1}, {"PageSize", 7}})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_NE(result.output.find("Everybody: finished"), std::string::npos) << result.output;
    const std::string archive = Archive("Everybody");
    const std::set<std::string> wanted = FilesOfSearch(json::object());
    ASSERT_GT(wanted.size(), 20u);
    EXPECT_EQ(NamesIn(archive), wanted);
    EXPECT_EQ(RunArchiver({"t", "-ps3cret", QString::fromStdString(archive)}).exit_code, 0);
    EXPECT_EQ(RunArchiver({"t", "-pother", QString::fromStdString(archive)}).exit_code, 2);
    EXPECT_EQ(FilesBelow(client_.ExportFolder()), std::vector<std::string>{"Everybody/Everybody.zip"});
}

TEST_F(ClientPersons, PictureThatIsLostIsMissingFromTheArchiveAlone)
{
    const std::set<std::string> wanted = FilesOfSearch({{"Limit", 12}});
    SetFault({{"Path", "/pictures/*"}, {"Kind", "status"}, {"Status", 404}, {"After", 4}, {"Count", 1}});
    const auto result =
        client_.RunRequests({Request("Some", {{"Limit", 12}, {"PageIndex", 1}, {"PageSize", 5}})});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    const std::set<std::string> names = NamesIn(Archive("Some"));
    // A picture that failed while it was fetched ahead is tried once more.
    EXPECT_GE(names.size(), wanted.size() - 1);
    for (const std::string& name : names)
        EXPECT_EQ(wanted.count(name), 1u) << name;
}

TEST_F(ClientPersons, InterruptStopsBehindThePageAndLeavesItsPictures)
{
    SetFault({{"Path", kSearchPath}, {"Kind", "delay"}, {"DelayMs", 400}, {"Count", -1}});
    client_.StartRequests({Request("Stopped", {{"PageIndex", 1}, {"PageSize", 3}})});
    ASSERT_TRUE(client_.WaitForOutput("[1-9] page"));
    client_.Interrupt();
    const auto result = client_.Finish();
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.output.find("Stopped: stopped"), std::string::npos) << result.output;
    EXPECT_FALSE(Exists(Archive("Stopped")));
    const std::vector<std::string> left = Scratch();
    EXPECT_GE(left.size(), 3u);
    EXPECT_EQ(left.size() % 3, 0u) << "a page was cut short";
}

TEST_F(ClientPersons, StationThatFailsOnTheWayLeavesNothing)
{
    SetFault({{"Path", kSearchPath}, {"Kind", "status"}, {"Status", 500}, {"After", 2}, {"Count", -1}});
    const auto result = client_.RunRequests({Request("Failed", {{"PageIndex", 1}, {"PageSize", 3}})});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.output.find("Failed: failed: "), std::string::npos) << result.output;
    EXPECT_TRUE(FilesBelow(client_.ExportFolder()).empty());
}

TEST_F(ClientPersons, RightPasswordPassesOnEveryPageAndAWrongOneIsRefusedInWords)
{
    const QString key = QString::fromStdString(client_.Path("shared.key"));
    ASSERT_EQ(client_.Run({"share-key", key}).exit_code, 0);
    Trust(key.toStdString());
    json request = Request("Checked", {{"Limit", 10}, {"PageIndex", 1}, {"PageSize", 4}});
    json& check = Server(request)["CheckPasswordRequest"];
    check = {{"UserName", "operator"}, {"PassWord", "guess"}, {"PasswordType", 0}, {"LoginModel", 1}};
    const auto refused = RunEnciphered(request);
    EXPECT_EQ(refused.exit_code, 1);
    EXPECT_NE(refused.output.find("Checked: failed: "), std::string::npos) << refused.output;
    EXPECT_NE(refused.output.find("4 wrong passwords more"), std::string::npos) << refused.output;
    EXPECT_TRUE(FilesBelow(client_.ExportFolder()).empty());
    check["PassWord"] = "fetchyard";
    const auto accepted = RunEnciphered(request);
    EXPECT_EQ(accepted.exit_code, 0) << accepted.output;
    EXPECT_EQ(NamesIn(Archive("Checked")), FilesOfSearch({{"Limit", 10}}));
}

TEST_F(ClientPersons, SampleFitsItsSchemaAndRuns)
{
    QFile file(QString(DOCS_FOLDER) + "/requests/person-pictures.sample.json");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto result = client_.RunTexts({file.readAll().toStdString()});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    EXPECT_TRUE(Exists(Archive("Persons")));
}

TEST_F(ClientPersons, FoldersToldFromTheWorkingFolderOnAreFoundByTheArchiver)
{
    client_.UseRelativeFolders();
    const auto result =
        client_.RunRequests({Request("Near", {{"PageIndex", 1}, {"PageSize", 3}, {"Limit", 3}})});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(NamesIn(Archive("Near")), FilesOfSearch({{"Limit", 3}}));
    EXPECT_EQ(FilesBelow(client_.ExportFolder()), std::vector<std::string>{"Near/Near.zip"});
}

TEST_F(ClientPersons, RequestThatTheLibraryWouldMisreadIsRefused)
{
    json quoted = Request("A", {{"PageIndex", 1}, {"PageSize", 3}});
    quoted["FileExportRequest"]["PersonExportPicNode"]["ZipEncodingPassword"] = "a\"b";
    json elsewhere = Request("../A", {{"PageIndex", 1}, {"PageSize", 3}});
    json no_comma = Request("A", {{"PageIndex", 1}});
    json misspelt = Request("A", {{"PageIndex", 1}, {"PageSize", 3}});
    misspelt["FileExportRequest"]["PersonExportPicNode"]["ZipNmae"] = "A";
    json typed = Request("A", {{"PageIndex", 1}, {"PageSize", 3}});
    typed["FileExportRequest"]["FileExportType"] = 3;
    for (const json& request : {quoted, elsewhere, no_comma, misspelt, typed}) {
        const auto result = client_.RunRequests({request});
        EXPECT_EQ(result.exit_code, 2) << request << result.output;
        EXPECT_NE(result.output.find("/FileExportRequest"), std::string::npos) << result.output;
    }
    EXPECT_TRUE(FilesBelow(client_.ExportFolder()).empty());
}
