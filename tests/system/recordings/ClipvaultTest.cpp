#include "ClipvaultFixture.h"
#include "ZellTaskKit/PluginComm.h"

#include <memory>

using nlohmann::json;
using namespace SystemTest;
using ZellTaskKit::CPluginCommData;

namespace {

using Clipvault = ClipvaultFixture;

constexpr char kPath[] = "/API/ClipVault/V0/DownloadVideoFiles";

bool Ask(const std::string& request, std::string& answer)
{
    std::shared_ptr<CPluginCommData> response;
    const bool is_good = ZellTaskKit::CPluginCommManager::Instance().DoRequest(
        response, kPath, std::make_shared<CPluginCommData>(request, nullptr));
    if (response)
        response->JsonTxt(answer);
    return is_good;
}

}  // namespace

TEST_F(Clipvault, VideoAndSnapshotAreDelivered)
{
    json request = Request();
    Param(request)["IsSnap"] = true;
    EXPECT_TRUE(Start(request));
    EXPECT_EQ(response_, json::parse(R"({"TaskDownloadState":2,"ErrorModule":0,"ErrorCode":0,
        "ResourceDownloadState":[{"ResourceID":"1","SiteID":"0","ResourceDownloadStateType":2,"ErrorModule":0,
                                  "ErrorCode":0}]})"));
    ExpectFiles({"gate.jpg", "gate.mp4"});
    const VideoLook video(Target("gate.mp4"));
    EXPECT_TRUE(RunsFrom(video, kMinute + 11, 0));
    EXPECT_EQ(video.frames.size(), 250u);
    const FrameTime snapshot = ReadTime(QImage(QString::fromStdString(Target("gate.jpg"))));
    EXPECT_EQ(snapshot.Count(), FrameTime({kMinute + 11, 0}).Count());
}

TEST_F(Clipvault, FormatsHaveTheirExtensions)
{
    for (const auto& [format, name] :
         {std::pair(0, "plain"), std::pair(1, "film.avi"), std::pair(2, "film.mp4")}) {
        json request = Request(format == 0 ? "plain" : "film");
        Param(request)["VideoFormat"] = format;
        EXPECT_TRUE(Start(request));
        EXPECT_EQ(VideoLook(Target(name)).frames.size(), 250u) << name;
    }
    ExpectFiles({"film.avi", "film.mp4", "plain"});
    EXPECT_EQ(ReadBytes(Target("film.avi")).substr(0, 4), "RIFF");
    EXPECT_EQ(ReadBytes(Target("plain")).substr(4, 4), "ftyp");
}

TEST_F(Clipvault, FolderIsMadeAndNeedsNoSeparator)
{
    json request = Request();
    Param(request)["CustomFilePath"] = Out() + "a/b";
    EXPECT_TRUE(Start(request));
    EXPECT_EQ(NamesIn(Out() + "a/b"), std::vector<std::string>{"gate.mp4"});
}

TEST_F(Clipvault, EachTimeOfEachResourceIsAFileWithANumberBehind)
{
    json request = Request();
    Param(request)["IsSnap"] = true;
    Resource(request)["DownloadTime"].push_back({{"StartTime", kMinute + 30}, {"EndTime", kMinute + 31}});
    json other = Resource(request);
    other["ResourceID"] = "2";
    other["SiteID"] = "7";
    other["IsCameraNO"] = true;
    other["DownloadTime"] = {{{"StartTime", kMinute + 40}, {"EndTime", kMinute + 42}}};
    request["DownloadVideoFileRequest"]["ResourceParam"].push_back(other);
    settings_.sites[7] = station_.Address();
    ZellClientHost::SetClientSettings(settings_);
    EXPECT_TRUE(Start(request));
    ExpectFiles({"gate-2.jpg", "gate-2.mp4", "gate-3.jpg", "gate-3.mp4", "gate.jpg", "gate.mp4"});
    EXPECT_TRUE(RunsFrom(VideoLook(Target("gate-2.mp4")), kMinute + 30, 0));
    EXPECT_TRUE(RunsFrom(VideoLook(Target("gate-3.mp4")), kMinute + 40, 0));
    EXPECT_EQ(response_["ResourceDownloadState"][1]["SiteID"], "7");
    EXPECT_EQ(response_["ResourceDownloadState"][1]["ResourceDownloadStateType"], 2);
}

TEST_F(Clipvault, VideoOfADeviceIsThatOfItsNumber)
{
    json request = Request();
    Param(request)["DownloadType"] = 1;
    Resource(request)["ResourceID"] = "3";
    Resource(request)["ResourceType"] = 2008;
    EXPECT_TRUE(Start(request));
    EXPECT_EQ(VideoLook(Target("gate.mp4")).frames.size(), 250u);
    EXPECT_EQ(station_.RequestCount("/api/v1/recordings/3/clip"), 1);
}

TEST_F(Clipvault, SnapshotShowsTheFirstFrameThereIs)
{
    json request = Request();
    Param(request)["IsSnap"] = true;
    Resource(request)["DownloadTime"] = {{{"StartTime", kMinute - 60}, {"EndTime", kMinute + 2}}};
    EXPECT_TRUE(Start(request));
    EXPECT_TRUE(RunsFrom(VideoLook(Target("gate.mp4")), kMinute, 0));
    EXPECT_EQ(ReadTime(QImage(QString::fromStdString(Target("gate.jpg")))).second, kMinute);
}

TEST_F(Clipvault, FileThatIsThereIsReplaced)
{
    std::filesystem::create_directories(Out());
    WriteBytes(Target("gate.mp4"), "old");
    EXPECT_TRUE(Start(Request()));
    EXPECT_EQ(VideoLook(Target("gate.mp4")).frames.size(), 250u);
}

TEST_F(Clipvault, SizeIsWhatHasArrivedUntilTheDownloadIsForgotten)
{
    EXPECT_EQ(Size("guid-gate"), 0);
    EXPECT_TRUE(Start(Request()));
    EXPECT_EQ(Size("guid-gate"), static_cast<std::int64_t>(std::filesystem::file_size(Target("gate.mp4"))));
    Remove("guid-gate");
    EXPECT_EQ(Size("guid-gate"), 0);
    Remove("guid-gate");
    Remove("");
}

TEST_F(Clipvault, InterfacePathCarriesTheSameDownloadOut)
{
    std::string answer;
    EXPECT_TRUE(Ask(Request().dump(), answer));
    EXPECT_EQ(json::parse(answer)["Response"]["TaskDownloadState"], 2);
    ExpectFiles({"gate.mp4"});
    EXPECT_FALSE(Ask("{}", answer));
    json unknown = Request();
    Resource(unknown)["ResourceID"] = "99";
    EXPECT_FALSE(Ask(unknown.dump(), answer));
}

TEST_F(Clipvault, RequestOfAPathNeedsNoGuid)
{
    json request = Request();
    request["DownloadVideoFileRequest"].erase("GUID");
    std::string answer;
    EXPECT_TRUE(Ask(request.dump(), answer));
    ExpectFiles({"gate.mp4"});
}

TEST_F(Clipvault, StoppedPluginServesNothingAndCanBeStartedAgain)
{
    EXPECT_TRUE(ZellClientHost::StopPlugin(kPluginId));
    std::string answer;
    EXPECT_FALSE(Ask(Request().dump(), answer));
    EXPECT_FALSE(Start(Request()));
    ExpectFailure(23, ZellNetLink::NotStarted);
    std::string reason;
    EXPECT_TRUE(ZellClientHost::LoadPlugin(kPluginId, CLIPVAULT_MODULE, reason)) << reason;
    EXPECT_TRUE(Start(Request()));
    EXPECT_TRUE(Ask(Request("more").dump(), answer));
    ExpectFiles({"gate.mp4", "more.mp4"});
}

TEST_F(Clipvault, ConnectionThatBreaksIsTakenUpAgain)
{
    EXPECT_TRUE(Start(Request("whole")));
    station_.SetFault(
        {{"Path", "/api/v1/recordings/1/clip"}, {"Kind", "cut"}, {"CutAt", 50000}, {"Count", 2}});
    EXPECT_TRUE(Start(Request("cut")));
    EXPECT_TRUE(ReadBytes(Target("cut.mp4")) == ReadBytes(Target("whole.mp4")));
    EXPECT_EQ(station_.RequestCount("/api/v1/recordings/1/clip"), 4);
}

TEST_F(Clipvault, ManyAtOnceEachGetTheirOwn)
{
    std::vector<std::thread> threads;
    std::atomic<int> good{0};
    const auto start =
        Find<bool (*)(const std::string&, const std::string&, std::string&)>("StartDownloadVideoFile");
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&, i] {
            json request = Request("v" + std::to_string(i));
            Resource(request)["ResourceID"] = std::to_string(i + 1);
            std::string response;
            good += start("", request.dump(), response) ? 1 : 0;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, 8);
    EXPECT_EQ(NamesIn(Out()).size(), 8u);
    EXPECT_TRUE(RunsFrom(VideoLook(Target("v7.mp4")), kMinute + 11, 0));
}
