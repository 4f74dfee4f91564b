#include "ClipvaultFixture.h"
#include "ZellErrorText/ErrorInfoMgr.h"

using nlohmann::json;
using namespace SystemTest;

namespace {

using ClipvaultFailure = ClipvaultFixture;

// A request that some member is wrong in.
json Without(json request, const char* pointer)
{
    const json::json_pointer path(pointer);
    request[path.parent_pointer()].erase(path.back());
    return request;
}

json With(json request, const char* pointer, const json& value)
{
    request[json::json_pointer(pointer)] = value;
    return request;
}

}  // namespace

TEST_F(ClipvaultFailure, UnknownCameraHasTheStationsError)
{
    json request = Request();
    Resource(request)["ResourceID"] = "99";
    EXPECT_FALSE(Start(request));
    ExpectFailure(24, 4);
    EXPECT_EQ(response_["ResourceDownloadState"],
              json::parse(R"([{"ResourceID":"99","SiteID":"0","ResourceDownloadStateType":3,"ErrorModule":24,
                               "ErrorCode":4}])"));
    ExpectFiles({});
}

TEST_F(ClipvaultFailure, TimeWithoutRecordingHasTheStationsError)
{
    json request = Request();
    Resource(request)["DownloadTime"] = {{{"StartTime", 1}, {"EndTime", 2}}};
    EXPECT_FALSE(Start(request));
    ExpectFailure(24, 4);
    ExpectFiles({});
}

TEST_F(ClipvaultFailure, UnknownSiteIsToldWithoutARequest)
{
    json request = Request();
    Resource(request)["SiteID"] = "5";
    EXPECT_FALSE(Start(request));
    ExpectFailure(23, ZellNetLink::SiteUnknown);
    EXPECT_EQ(station_.RequestCount("/api/v1/recordings/1/clip"), 0);
    ExpectFiles({});
}

TEST_F(ClipvaultFailure, ServerThatIsNotThereIsTold)
{
    station_.Stop();
    EXPECT_FALSE(Start(Request()));
    ExpectFailure(22, 7);
    ExpectFiles({});
}

TEST_F(ClipvaultFailure, ServerThatFailsIsTold)
{
    station_.SetFault({{"Path", "/api/v1/recordings/*"}, {"Kind", "status"}, {"Status", 503}});
    EXPECT_FALSE(Start(Request()));
    ExpectFailure(21, 503);
    ExpectFiles({});
}

TEST_F(ClipvaultFailure, VideoThatKeepsBreakingOffFailsInTheEnd)
{
    station_.SetFault({{"Path", "/api/v1/recordings/*"}, {"Kind", "cut"}, {"CutAt", 10}});
    EXPECT_FALSE(Start(Request()));
    ExpectFailure(22, 18);
    ExpectFiles({});
    EXPECT_EQ(station_.RequestCount("/api/v1/recordings/1/clip"), 10);
}

TEST_F(ClipvaultFailure, SnapshotThatFailsTakesTheVideoWithIt)
{
    station_.SetFault({{"Path", "/api/v1/recordings/1/frame"}, {"Kind", "status"}, {"Status", 500}});
    json request = Request();
    Param(request)["IsSnap"] = true;
    EXPECT_FALSE(Start(request));
    ExpectFailure(21, 500);
    ExpectFiles({});
}

TEST_F(ClipvaultFailure, OtherResourcesAreFetchedAllTheSame)
{
    json request = Request();
    json good = Resource(request);
    good["CustomFileName"] = "good";
    Resource(request)["ResourceID"] = "99";
    request["DownloadVideoFileRequest"]["ResourceParam"].push_back(good);
    EXPECT_FALSE(Start(request));
    ExpectFailure(24, 4);
    EXPECT_EQ(response_["ResourceDownloadState"][0]["ResourceDownloadStateType"], 3);
    EXPECT_EQ(response_["ResourceDownloadState"][1]["ResourceDownloadStateType"], 2);
    ExpectFiles({"good.mp4"});
}

TEST_F(ClipvaultFailure, MembersThatAreMissingOrWrongAreRefused)
{
    constexpr char kParam[] = "/DownloadVideoFileRequest/DownloadParam";
    constexpr char kResource[] = "/DownloadVideoFileRequest/ResourceParam/0";
    const std::string param = kParam;
    const std::string resource = kResource;
    const json good = Request();
    std::vector<json> wrong = {json::object(), json::array(), json("text"), json(5)};
    for (const std::string& path :
         {param, param + "/CustomFilePath", std::string("/DownloadVideoFileRequest/ResourceParam"),
          resource + "/ResourceID", resource + "/DownloadTime", resource + "/CustomFileName",
          resource + "/DownloadTime/0/StartTime", resource + "/DownloadTime/0/EndTime"})
        wrong.push_back(Without(good, path.c_str()));
    for (const auto& [path, value] : std::vector<std::pair<std::string, json>>{
             {"/DownloadVideoFileRequest/GUID", 5},
             {param + "/VideoFormat", "mp4"},
             {param + "/VideoFormat", 1.5},
             {param + "/DownloadType", true},
             {param + "/Password", 1234},
             {param + "/CustomFilePath", ""},
             {param + "/CustomFilePath", json::array()},
             {param + "/IsSnap", 1},
             {resource + "/ResourceID", 1},
             {resource + "/ResourceID", "one"},
             {resource + "/ResourceID", "1/../2"},
             {resource + "/ResourceID", "-1"},
             {resource + "/ResourceID", "99999999999999999999"},
             {resource + "/SiteID", 0},
             {resource + "/SiteID", "home"},
             {resource + "/IsCameraNO", "yes"},
             {resource + "/CustomFileName", ""},
             {resource + "/DownloadTime", json::array()},
             {resource + "/DownloadTime", "always"},
             {resource + "/DownloadTime/0/StartTime", "now"},
             {resource + "/DownloadTime/0/StartTime", -1},
             {resource + "/DownloadTime/0/EndTime", kMinute + 11},
             {"/DownloadVideoFileRequest/ResourceParam", json::array()}})
        wrong.push_back(With(good, path.c_str(), value));
    for (const json& request : wrong) {
        EXPECT_FALSE(Start(request)) << request;
        ExpectFailure(20, 3);
        EXPECT_EQ(response_.count("ResourceDownloadState"), 0u);
    }
    for (const char* const text : {"", "{", "\xff", "null"}) {
        EXPECT_FALSE(StartText(text)) << text;
        ExpectFailure(20, 3);
    }
    ExpectFiles({});
    EXPECT_EQ(station_.RequestCount("/api/v1/recordings/1/clip"), 0);
}

TEST_F(ClipvaultFailure, FolderThatCantBeMadeIsTold)
{
    WriteBytes(folder_.File("file"), "x");
    json request = Request();
    Param(request)["CustomFilePath"] = folder_.File("file/below");
    EXPECT_FALSE(Start(request));
    ExpectFailure(20, 3215);
}

TEST_F(ClipvaultFailure, NameThatIsAFolderIsLeftAlone)
{
    std::filesystem::create_directories(Target("gate.mp4/inside"));
    EXPECT_FALSE(Start(Request()));
    EXPECT_EQ(response_["ErrorModule"], 0);
    EXPECT_NE(response_["ErrorCode"], 0);
    ExpectFiles({"gate.mp4"});
    EXPECT_TRUE(std::filesystem::exists(Target("gate.mp4/inside")));
}

TEST_F(ClipvaultFailure, SameGuidTwiceAtOnceIsRefused)
{
    station_.SetFault({{"Path", "/api/v1/recordings/1/clip"}, {"Kind", "delay"}, {"DelayMs", 60000}});
    const auto start =
        Find<bool (*)(const std::string&, const std::string&, std::string&)>("StartDownloadVideoFile");
    std::string first;
    std::thread under_way([&] { start("", Request().dump(), first); });
    while (station_.RequestCount("/api/v1/recordings/1/clip") == 0)
        std::this_thread::yield();
    EXPECT_FALSE(Start(Request()));
    ExpectFailure(20, 3);
    Stop("guid-gate");
    under_way.join();
    EXPECT_EQ(json::parse(first)["Response"]["TaskDownloadState"], 4);
}

TEST_F(ClipvaultFailure, AccountIsSentAndARefusedOneTold)
{
    const StationProcess strict(StationProcess::kEvents, {"--require-account"});
    settings_.sites[0] = strict.Address();
    ZellClientHost::SetClientSettings(settings_);
    EXPECT_FALSE(Start(Request()));
    ExpectFailure(24, 2);
    settings_.user_name = "operator";
    settings_.password = "fetchyard";
    ZellClientHost::SetClientSettings(settings_);
    EXPECT_TRUE(Start(Request()));
    ExpectFiles({"gate.mp4"});
}

TEST_F(ClipvaultFailure, DiskThatIsFullIsToldAndHasNoHalfFile)
{
    const QString script = "mount -t tmpfs -o size=64k small \"$0\" && { \"$@\"; find \"$0\" -type f; }";
    for (const char* const password : {"", "secret"}) {
        json request = Request();
        if (*password != '\0')
            Param(request)["Password"] = password;
        std::filesystem::create_directories(settings_.data_path);
        const ToolResult result =
            RunTool("unshare",
                    {"--user", "--map-root-user", "--mount", "sh", "-c", script,
                     QString::fromStdString(settings_.data_path), CLIP_HOST, CLIPVAULT_MODULE,
                     QString::fromStdString(station_.Address()), QString::fromStdString(settings_.data_path)},
                    QByteArray::fromStdString(request.dump()));
        EXPECT_NE(result.output.find("false "), std::string::npos) << result.output;
        EXPECT_NE(result.output.find(*password == '\0' ? R"("ErrorModule":0,"ErrorCode":28,)"
                                                       : R"("ErrorModule":20,"ErrorCode":3606,)"),
                  std::string::npos)
            << result.output;
        EXPECT_EQ(result.output.find("\n" + Scratch()), std::string::npos) << result.output;
        EXPECT_EQ(NamesIn(Out()), std::vector<std::string>{});
    }
}

TEST_F(ClipvaultFailure, OtherDiskThatIsFullHasNoHalfFileEither)
{
    const QString script = "mount -t tmpfs -o size=64k small \"$0\" && { \"$@\"; find \"$0\" -type f; }";
    std::filesystem::create_directories(Out());
    const ToolResult result =
        RunTool("unshare",
                {"--user", "--map-root-user", "--mount", "sh", "-c", script, QString::fromStdString(Out()),
                 CLIP_HOST, CLIPVAULT_MODULE, QString::fromStdString(station_.Address()),
                 QString::fromStdString(settings_.data_path)},
                QByteArray::fromStdString(Request().dump()));
    EXPECT_NE(result.output.find("false "), std::string::npos) << result.output;
    EXPECT_EQ(result.output.find("gate.mp4"), std::string::npos) << result.output;
    EXPECT_EQ(NamesIn(Scratch()), std::vector<std::string>{});
}

TEST_F(ClipvaultFailure, OtherDiskWithRoomGetsTheWholeVideo)
{
    const QString script =
        "mount -t tmpfs -o size=64m small \"$0\" && { \"$@\"; cp \"$0\"/gate.mp4 \"$0\".copy; ls -A \"$0\"; "
        "}";
    settings_.save_path = folder_.File("out");
    std::filesystem::create_directories(Out());
    const ToolResult result =
        RunTool("unshare",
                {"--user", "--map-root-user", "--mount", "sh", "-c", script, QString::fromStdString(Out()),
                 CLIP_HOST, CLIPVAULT_MODULE, QString::fromStdString(station_.Address()),
                 QString::fromStdString(settings_.data_path)},
                QByteArray::fromStdString(Request().dump()));
    EXPECT_NE(result.output.find("true "), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("\ngate.mp4\n"), std::string::npos) << result.output;
    EXPECT_EQ(VideoLook(Out() + ".copy").frames.size(), 250u);
    EXPECT_EQ(NamesIn(Scratch()), std::vector<std::string>{});
}

TEST_F(ClipvaultFailure, EveryCodeOfItsOwnHasWords)
{
    for (const auto& [module, code] :
         {std::pair(20, 3), std::pair(20, 3215), std::pair(20, 3605), std::pair(20, 3606), std::pair(23, 4),
          std::pair(23, 5), std::pair(24, 1), std::pair(24, 2), std::pair(24, 4), std::pair(24, 5)}) {
        const std::string words = ZellErrorText::CErrorInfoMgr::UiInstance()
                                      .GetErrorInfoByModuleAndCode(module, code)
                                      .toStdString();
        EXPECT_EQ(words.find("(module "), std::string::npos) << words;
    }
}
