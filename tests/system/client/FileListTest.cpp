#include "ClientFixture.h"

#include <gtest/gtest.h>
#include <QFile>

#include <fstream>
#include <iterator>

using nlohmann::json;
using namespace SystemTest;

namespace {

std::string Content(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

json List(const std::vector<json>& files)
{
    json list = json::array();
    for (const json& file : files)
        list.push_back({{"FileRequest", file}});
    return {{"FileRequestList", list}};
}

json VideoRequest(const std::string& text)
{
    return {{"FileType", 2}, {"VideoParam", {{"VideoDownloadParam", text}}}};
}

class ClientFileList : public ClientFixture
{
protected:
    json File(int type, const std::string& name, const std::string& url) const
    {
        return {{"FileType", type},
                {"SavePath", client_.ExportFolder() + "list"},
                {"FileName", name},
                {"RequestUrl", url}};
    }
    std::string Path(const std::string& name) const { return client_.ExportFolder() + "list/" + name; }
};

constexpr char kFirmware[] = "/files/firmware-2.4.1.bin";
constexpr char kCameras[] = "/api/v1/cameras";

}  // namespace

TEST_F(ClientFileList, EachPictureIsATaskAndAFileOfItsOwn)
{
    const auto result = client_.RunRequests(
        {List({File(0, "a.jpg", "/pictures/event-1.jpg"), File(0, "b", "/pictures/event-2.jpg")})});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    ExpectWords(result, "a.jpg: finished");
    ExpectWords(result, "b: finished");
    EXPECT_EQ(Content(Path("a.jpg")).substr(0, 3), "\xFF\xD8\xFF");
    EXPECT_NE(Content(Path("a.jpg")), Content(Path("b")));
}

TEST_F(ClientFileList, ServerFilesAreOneTaskThatSendsWhatIsAsked)
{
    json page = File(1, "page.json", "/api/v1/events/report");
    page["FileParam"] = {{"RequestMethod", "POST"}, {"SendData", R"({"PageIndex":1,"PageSize":3})"}};
    const auto result = client_.RunRequests({List({File(1, "cameras.json", kCameras), page})});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    ExpectWords(result, "cameras.json and 1 more: finished");
    EXPECT_TRUE(json::accept(Content(Path("cameras.json"))));
    EXPECT_EQ(json::parse(Content(Path("page.json")))["Sheets"][0]["Rows"].size(), 3u);
}

TEST_F(ClientFileList, ClipsAreOneTaskThatTriesEach)
{
    const auto result = client_.RunRequests(
        {List({File(3, "gone.mp4", "/pictures/none.jpg"), File(3, "clip.jpg", "/pictures/event-3.jpg")})});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "gone.mp4 and 1 more: failed");
    EXPECT_FALSE(Exists(Path("gone.mp4")));
    EXPECT_TRUE(Exists(Path("clip.jpg")));
}

TEST_F(ClientFileList, MixedListLosesNothing)
{
    const auto result =
        client_.RunRequests({List({File(3, "clip.jpg", "/pictures/event-3.jpg"), File(1, "c.json", kCameras),
                                   File(0, "p.jpg", "/pictures/event-1.jpg")})});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(FilesBelow(client_.ExportFolder()),
              (std::vector<std::string>{"list/c.json", "list/clip.jpg", "list/p.jpg"}));
}

TEST_F(ClientFileList, RelativeFolderLiesBelowTheSaveFolder)
{
    json file = File(1, "c.json", kCameras);
    file["SavePath"] = "below/it";
    EXPECT_EQ(client_.RunRequests({List({file})}).exit_code, 0);
    file.erase("SavePath");
    EXPECT_EQ(client_.RunRequests({List({file})}).exit_code, 0);
    EXPECT_EQ(FilesBelow(client_.ExportFolder()), (std::vector<std::string>{"below/it/c.json", "c.json"}));
}

TEST_F(ClientFileList, VideoRequestsGoToThePlugin)
{
    client_.UsePlugin("clipvault.c", VIDEO_TEST_PLUGIN);
    const auto result = client_.RunRequests({List({VideoRequest("{\"one\":1}"), VideoRequest("{}")})});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    ExpectWords(result, "video request and 1 more: finished");
}

TEST_F(ClientFileList, VideoRequestThatThePluginRefusesFailsTheTask)
{
    client_.UsePlugin("clipvault.c", VIDEO_TEST_PLUGIN);
    const auto result = client_.RunRequests({List({VideoRequest("{}"), VideoRequest("refuse")})});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "video request and 1 more: failed");
}

TEST_F(ClientFileList, VideoRequestWithoutAPluginIsToldInWords)
{
    client_.UseOption("--no-own-plugins");
    const auto result = client_.RunRequests({List({VideoRequest("{}")})});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "Nobody serves /API/ClipVault/V0/DownloadVideoFiles");
}

TEST_F(ClientFileList, PluginThatIsNotThereIsToldBeforeAnythingStarts)
{
    client_.UsePlugin("clipvault.c", "/nowhere/clipvault.so");
    const auto result = client_.RunRequests({List({File(1, "c.json", kCameras)})});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "the plug-in clipvault.c can't be loaded: ");
    EXPECT_EQ(station_.RequestCount(kCameras), 0);
}

TEST_F(ClientFileList, ServerFileThatIsThereAlreadyIsLeftAlone)
{
    const json list = List({File(1, "c.json", kCameras)});
    ASSERT_EQ(client_.RunRequests({list}).exit_code, 0);
    const std::string before = Content(Path("c.json"));
    const auto result = client_.RunRequests({list});
    EXPECT_EQ(result.exit_code, 2) << result.output;
    ExpectWords(result, "/FileRequestList/0/FileRequest/FileName: ");
    ExpectWords(result, "is there already");
    EXPECT_EQ(Content(Path("c.json")), before);
    EXPECT_EQ(station_.RequestCount(kCameras), 1);
}

TEST_F(ClientFileList, ServerFileThatStandsTwiceInTheListIsRefused)
{
    const auto result =
        client_.RunRequests({List({File(1, "c.json", kCameras), File(1, "c.json", kCameras)})});
    EXPECT_EQ(result.exit_code, 2) << result.output;
    ExpectWords(result, "/FileRequestList/1/FileRequest/FileName: ");
    EXPECT_FALSE(Exists(Path("c.json")));
}

TEST_F(ClientFileList, FolderThatCannotBeMadeIsToldBeforeAnythingStarts)
{
    ASSERT_EQ(client_.RunRequests({List({File(1, "c.json", kCameras)})}).exit_code, 0);
    json file = File(3, "clip.jpg", "/pictures/event-3.jpg");
    file["SavePath"] = Path("c.json") + "/below";
    const auto result = client_.RunRequests({List({file})});
    EXPECT_EQ(result.exit_code, 2) << result.output;
    ExpectWords(result, "can't be made");
}

TEST_F(ClientFileList, PictureThatIsNotThereFailsItsTaskAlone)
{
    const auto result = client_.RunRequests(
        {List({File(0, "a.jpg", "/pictures/none.jpg"), File(0, "b.jpg", "/pictures/event-2.jpg")})});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "a.jpg: failed");
    ExpectWords(result, "b.jpg: finished");
    EXPECT_FALSE(Exists(Path("a.jpg")));
    // The library does not report why; the log does.
    ExpectWords(result, "fetchyard.log tells why");
}

TEST_F(ClientFileList, PictureThatIsNoneIsNotTakenForOne)
{
    const auto result = client_.RunRequests({List({File(0, "a.jpg", kCameras)})});
    EXPECT_EQ(result.exit_code, 1) << result.output;
}

TEST_F(ClientFileList, ObjectsOfEveryStoreArrive)
{
    json log = File(3, "log", "/storage/camera-1.log");
    log["ShortVideoParam"] = {{"DownloadType", 1}, {"StoragePlace", 0}};
    json picture = File(3, "picture.jpg", "/storage/event-5.jpg");
    picture["ShortVideoParam"] = {{"DownloadType", 0}, {"StoragePlace", 1}};
    json platform_picture = File(3, "platform.jpg", "/storage/event-5.jpg");
    platform_picture["ShortVideoParam"] = {{"DownloadType", 2}};
    const auto result = client_.RunRequests(
        {List({File(3, "clip.mjpeg", "/storage/clip-5.mjpeg"), log, picture, platform_picture})});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    EXPECT_NE(Content(Path("log")).find(", level "), std::string::npos);
    EXPECT_EQ(Content(Path("picture.jpg")), Content(Path("platform.jpg")));
    EXPECT_EQ(Content(Path("clip.mjpeg")).substr(0, 3), "\xFF\xD8\xFF");
}

TEST_F(ClientFileList, ObjectOfAnotherPlaceIsNotThere)
{
    json clip = File(3, "clip.mjpeg", "/storage/clip-5.mjpeg");
    clip["ShortVideoParam"] = {{"StoragePlace", 0}};
    EXPECT_EQ(client_.RunRequests({List({clip})}).exit_code, 1);
    EXPECT_FALSE(Exists(Path("clip.mjpeg")));
}

TEST_F(ClientFileList, CutClipGoesOnWhereItBroke)
{
    SetFault({{"Path", kFirmware}, {"Kind", "cut"}, {"CutAt", 1000000}, {"Count", 2}});
    const auto result = client_.RunRequests({List({File(3, "firmware.bin", kFirmware)})});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    EXPECT_TRUE(Content(Path("firmware.bin")) == Content(station_.DataFolder() + kFirmware));
    EXPECT_EQ(station_.RequestCount(kFirmware), 3);
    EXPECT_EQ(station_.Requests()["Paths"][kFirmware]["Bytes"], 3 << 20);
}

TEST_F(ClientFileList, ClipWhosePartsLieLeavesNoFile)
{
    SetFault({{"Path", kFirmware}, {"Kind", "cut"}, {"CutAt", 1000000}, {"Count", 1}});
    SetFault({{"Path", kFirmware}, {"Kind", "range"}, {"Count", -1}});
    const auto result = client_.RunRequests({List({File(3, "firmware.bin", kFirmware)})});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    EXPECT_EQ(FilesBelow(client_.ExportFolder()), std::vector<std::string>{});
    EXPECT_EQ(FilesBelow(client_.Path("data/Downloads")), std::vector<std::string>{});
}

TEST_F(ClientFileList, CutServerFileLeavesNoFileAndSaysWhy)
{
    SetFault({{"Path", kFirmware}, {"Kind", "cut"}, {"CutAt", 1000000}, {"Count", 1}});
    const auto result = client_.RunRequests({List({File(1, "firmware.bin", kFirmware)})});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "firmware.bin: failed: ");
    EXPECT_FALSE(Exists(Path("firmware.bin")));
    EXPECT_EQ(client_.RunRequests({List({File(1, "firmware.bin", kFirmware)})}).exit_code, 0);
    EXPECT_TRUE(Content(Path("firmware.bin")) == Content(station_.DataFolder() + kFirmware));
}

TEST_F(ClientFileList, SlowFilesArriveWhole)
{
    SetFault({{"Path", "/synthetic/files/"}, {"Kind", "slow"}, {"BytesPerSecond", 100000}});
    const auto result = client_.RunRequests({List(
        {File(1, "a.bin", "/synthetic/files/20000.bin"), File(3, "b.bin", "/synthetic/files/20000.bin")})});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(Content(Path("a.bin")).size(), 20000u);
    EXPECT_EQ(Content(Path("a.bin")), Content(Path("b.bin")));
}

TEST_F(ClientFileList, ServerFilesBehindTheOneThatFailsAreNotFetched)
{
    const auto result = client_.RunRequests(
        {List({File(1, "a", kCameras), File(1, "b", "/files/none"), File(1, "c", kCameras)})});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    EXPECT_EQ(FilesBelow(client_.ExportFolder()), std::vector<std::string>{"list/a"});
    EXPECT_EQ(station_.RequestCount(kCameras), 1);
}

TEST_F(ClientFileList, EachDepartureFromASchemaIsToldWithItsPath)
{
    struct Case
    {
        json file;
        std::string path;
    };
    json no_name = File(1, "", kCameras);
    json folder_in_name = File(3, "a/b", kCameras);
    json misspelt = File(0, "a.jpg", "/pictures/event-1.jpg");
    misspelt["ImageParam"] = {{"SaveCach", true}};
    json wrong_kind = File(1, "a", kCameras);
    wrong_kind["FileParam"] = {{"RequestPattern", "0"}};
    json unknown_store = File(3, "a", kCameras);
    unknown_store["ShortVideoParam"] = {{"DownloadType", 5}};
    const std::vector<Case> cases = {
        {File(7, "a", kCameras), "/FileRequestList/0/FileRequest/FileType"},
        {no_name, "/FileRequestList/0/FileRequest/FileName"},
        {folder_in_name, "/FileRequestList/0/FileRequest/FileName"},
        {misspelt, "/FileRequestList/0/FileRequest/ImageParam"},
        {wrong_kind, "/FileRequestList/0/FileRequest/FileParam/RequestPattern"},
        {unknown_store, "/FileRequestList/0/FileRequest/ShortVideoParam/DownloadType"},
        {json{{"FileType", 2}}, "/FileRequestList/0/FileRequest"},
    };
    for (const Case& each : cases) {
        const auto result = client_.RunRequests({List({each.file})});
        EXPECT_EQ(result.exit_code, 2) << result.output;
        ExpectWords(result, each.path + ": ");
    }
    EXPECT_FALSE(Exists(client_.ExportFolder() + "list"));
}

TEST_F(ClientFileList, EmptyListIsRefused)
{
    EXPECT_EQ(client_.RunRequests({List({})}).exit_code, 2);
}

TEST_F(ClientFileList, EverySampleFitsItsSchema)
{
    const QString folder = QString(DOCS_FOLDER) + "/requests/";
    const auto result =
        client_.Run({"check", folder + "picture.sample.json", folder + "server-file.sample.json",
                     folder + "video.sample.json", folder + "clip.sample.json",
                     folder + "report-export.sample.json", folder + "transcode.sample.json"});
    EXPECT_EQ(result.exit_code, 0) << result.output;
}

TEST_F(ClientFileList, SamplesOfWhatTheStationHasLeaveTheirFiles)
{
    const QString folder = QString(DOCS_FOLDER) + "/requests/";
    const auto result = client_.Run({"run", folder + "picture.sample.json",
                                     folder + "server-file.sample.json", folder + "clip.sample.json"});
    EXPECT_EQ(result.exit_code, 0) << result.output;
}
