#include "RecordingsFixture.h"
#include "VideoClientFixture.h"

#include <gtest/gtest.h>
#include <QDateTime>
#include <QRect>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kClip[] = "/api/v1/recordings/1/clip";
constexpr char kPassword[] = "Gate 7 \"quoted\" ключ";
constexpr int kMp4 = 2;
constexpr int kAvi = 1;

// Pictures are 640 by 360: block letters at the bottom, on 40 lines above the last 24, from column 24 on.
constexpr QRect kBox(40, 304, 160, 20);
constexpr QRect kOutside(0, 70, 640, 200);

json Overlay()
{
    const json line = {
        {"Content",
         "\xE2\x96\x88\xE2\x96\x88\xE2\x96\x88\xE2\x96\x88\xE2\x96\x88\xE2\x96\x88\xE2\x96\x88\xE2\x96\x88"},
        {"FontSettings",
         {{"Size", 40}, {"Color", {{"Red", 255}, {"Green", 0}, {"Blue", 255}}}, {"Transparency", 0}}},
        {"PosXType", 0},
        {"PosX", 24},
        {"PosYType", 1},
        {"PosY", 24},
        {"BeginMilliSecond", 0},
        {"EndMilliSecond", 0}};
    return {{"OverlayType", 1}, {"OverlayLineArray", {{"LineArrayType", 0}, {"ContentLine", {line}}}}};
}

bool IsMagenta(QRgb colour)
{
    return qRed(colour) > 180 && qGreen(colour) < 80 && qBlue(colour) > 180;
}

// The part of the pixels there that have the overlay's colour.
double Covered(const QImage& image, const QRect& part)
{
    int count = 0;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            count += IsMagenta(image.pixel(x, y)) ? 1 : 0;
    return static_cast<double>(count) / (part.width() * part.height());
}

// Exports of videos from the minute that the station has recorded.
class ClientVideos : public VideoClientFixture
{
protected:
    ClientVideos() { UseWatermark({{"enable", false}}); }

    static std::string Iso(std::int64_t second)
    {
        return QDateTime::fromSecsSinceEpoch(second, Qt::UTC).toString(Qt::ISODate).toStdString();
    }
    // So many seconds from 23:59:11 on.
    static json Video(const std::string& name, int camera = 1, int seconds = 10)
    {
        return {{"ExportFileName", name},
                {"VideoFormat", kMp4},
                {"IsSnap", 0},
                {"CameraID", camera},
                {"WorkstationID", 0},
                {"BeginTime", Iso(kMinute + 11)},
                {"EndTime", Iso(kMinute + 11 + seconds)}};
    }
    static json Stamped(json video)
    {
        video["InfoOverlay"] = Overlay();
        return video;
    }
    json Export(const std::string& name, const std::vector<json>& videos, bool goes_on = false) const
    {
        json request = ReportRequest(client_, name, 1, "none", 0);
        Section(request, "ExportFileParam")["RequestAPI"] = "";
        Section(request, "DownloadFiles")["VideoDownload"] = videos;
        if (goes_on)
            request["FileExportRequest"]["RequestData"]["IsContinueDowinloading"] = true;
        return request;
    }
    std::string Out(const std::string& name) const { return client_.ExportFolder() + name; }
    void BeSlow(int bytes_per_second = 20000) const
    {
        SetFault({{"Path", kClip}, {"Kind", "slow"}, {"BytesPerSecond", bytes_per_second}});
    }
    std::string Opened(const std::string& file) const
    {
        const std::string opened = client_.Path("opened.mp4");
        const ToolResult result =
            RunTool("openssl",
                    {"enc", "-d", "-aes-256-cbc", "-pbkdf2", "-iter", "600000", "-in",
                     QString::fromStdString(file), "-out", QString::fromStdString(opened), "-pass", "stdin"},
                    QByteArray(kPassword) + "\n");
        EXPECT_TRUE(result.is_good) << result.output;
        return opened;
    }
    ClientRun::Result RunAndInterruptIn(const json& request, const std::string& folder)
    {
        client_.StartRequests({request});
        WaitForWorkIn(folder);
        client_.Interrupt();
        return client_.Finish();
    }
};

}  // namespace

TEST_F(ClientVideos, OverlayShowsInItsBoxAndTheRestIsTheRecording)
{
    const auto result = client_.RunRequests({Export("Gates", {Video("plain"), Stamped(Video("stamped"))})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    ExpectFiles({"Gates/plain.mp4", "Gates/stamped.mp4"});
    for (const char* const file : {"Gates/plain.mp4", "Gates/stamped.mp4"}) {
        const VideoLook video(Out(file));
        EXPECT_EQ(video.frames.size(), 250u) << file;
        EXPECT_TRUE(RunsFrom(video, kMinute + 11, 0)) << file;
    }
    const QImage plain = FrameAt(Out("Gates/plain.mp4"), 5);
    const QImage stamped = FrameAt(Out("Gates/stamped.mp4"), 5);
    EXPECT_EQ(ReadTime(stamped).Count(), ReadTime(plain).Count());
    EXPECT_LT(Covered(plain, kBox), 0.01);
    EXPECT_GT(Covered(stamped, kBox), 0.95);
    EXPECT_LT(Covered(stamped, kOutside), 0.01);
    EXPECT_LT(Distance(plain, stamped, kOutside), 3);
}

TEST_F(ClientVideos, AviHasTheFramesOfTheRecording)
{
    json video = Video("gate");
    video["VideoFormat"] = kAvi;
    const auto result = client_.RunRequests({Export("Gates", {video})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    ExpectFiles({"Gates/gate.avi"});
    EXPECT_EQ(ReadBytes(Out("Gates/gate.avi")).substr(0, 4), "RIFF");
    EXPECT_TRUE(RunsFrom(VideoLook(Out("Gates/gate.avi")), kMinute + 11, 0));
}

TEST_F(ClientVideos, StampedAviHasItsOverlayAndTheStampedMp4Beside)
{
    json video = Stamped(Video("gate", 1, 4));
    video["VideoFormat"] = kAvi;
    const auto result = client_.RunRequests({Export("Gates", {video})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const std::vector<std::string> files = FilesBelow(Out("Gates"));
    ASSERT_EQ(files.size(), 2u);
    for (const std::string& file : files) {
        const VideoLook look(Out("Gates/" + file));
        EXPECT_EQ(look.frames.size(), 100u) << file;
        EXPECT_TRUE(RunsFrom(look, kMinute + 11, 0)) << file;
        EXPECT_GT(Covered(FrameAt(Out("Gates/" + file), 2), kBox), 0.95) << file;
    }
    EXPECT_TRUE(Exists(Out("Gates/gate.avi")));
}

TEST_F(ClientVideos, ProtectedVideoOpensWithItsPassword)
{
    json video = Video("gate");
    video["VideoPassword"] = kPassword;
    const auto result = client_.RunRequests({Export("Gates", {video})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    ExpectFiles({"Gates/gate.mp4"});
    EXPECT_EQ(ReadBytes(Out("Gates/gate.mp4")).substr(0, 8), "Salted__");
    EXPECT_TRUE(RunsFrom(VideoLook(Opened(Out("Gates/gate.mp4"))), kMinute + 11, 0));
}

// Looks at every file of the client all the time that it fetches.
TEST_F(ClientVideos, PlainBytesOfAProtectedVideoAreNeverOnDisk)
{
    BeSlow(200000);
    json video = Video("gate");
    video["VideoPassword"] = kPassword;
    client_.StartRequests({Export("Gates", {video})});
    WaitForWorkIn(Fetching());
    int looks = 0;
    WaitUntil([this, &looks] {
        for (const std::string& file : NamesIn(Fetching())) {
            const std::string bytes = ReadBytes(Fetching() + "/" + file);
            for (const char* const mark : {"ftyp", "moov", "avcC"})
                EXPECT_EQ(bytes.find(mark), std::string::npos) << mark;
            ++looks;
        }
        return Exists(Out("Gates/gate.mp4"));
    });
    EXPECT_EQ(client_.Finish().exit_code, 0);
    EXPECT_GT(looks, 0);
}

TEST_F(ClientVideos, StampedVideoIsProtectedLastAndNoPlainOneStays)
{
    json video = Stamped(Video("gate"));
    video["VideoPassword"] = kPassword;
    const auto result = client_.RunRequests({Export("Gates", {video})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    ExpectFiles({"Gates/gate.mp4"});
    EXPECT_EQ(ReadBytes(Out("Gates/gate.mp4")).substr(0, 8), "Salted__");
    const std::string opened = Opened(Out("Gates/gate.mp4"));
    EXPECT_TRUE(RunsFrom(VideoLook(opened), kMinute + 11, 0));
    EXPECT_GT(Covered(FrameAt(opened, 5), kBox), 0.95);
}

TEST_F(ClientVideos, SnapshotIsTheFirstFrame)
{
    json video = Video("gate");
    video["IsSnap"] = 1;
    const auto result = client_.RunRequests({Export("Gates", {video})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    ExpectFiles({"Gates/gate.jpg", "Gates/gate.mp4"});
    EXPECT_EQ(ReadTime(QImage(QString::fromStdString(Out("Gates/gate.jpg")))).Count(),
              (FrameTime{kMinute + 11, 0}.Count()));
}

TEST_F(ClientVideos, NamesAndFoldersOfAnyScriptReachTheDisk)
{
    json video = Stamped(Video("大门 南", 2, 2));
    video["FolderName"] = "录像 甲";
    const auto result = client_.RunRequests({Export("تصدير", {video})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    ExpectFiles({"تصدير/录像 甲/大门 南.mp4"});
}

TEST_F(ClientVideos, InterruptInAFetchStopsAndLeavesNothing)
{
    BeSlow();
    const auto result = RunAndInterruptIn(Export("Gates", {Video("one"), Video("two", 2)}), Fetching());
    EXPECT_EQ(result.exit_code, 1);
    ExpectWords(result, "Gates: stopped");
    ExpectFiles({});
    EXPECT_EQ(station_.RequestCount("/api/v1/recordings/2/clip"), 0);
}

// There is nothing to stamp then, which counts as a failure of the stamp.
TEST_F(ClientVideos, InterruptInAFetchOfAVideoThatIsStampedFailsUnlessFailuresAreCollected)
{
    BeSlow();
    const auto failed = RunAndInterruptIn(Export("Gates", {Stamped(Video("one"))}), Fetching());
    ExpectWords(failed, "Gates: failed");
    ExpectFiles({});
    BeSlow();
    const auto stopped = RunAndInterruptIn(Export("Gates", {Stamped(Video("one"))}, true), Fetching());
    ExpectWords(stopped, "Gates: stopped");
    ExpectFiles({});
}

TEST_F(ClientVideos, InterruptInAStampLeavesNothing)
{
    json video = Stamped(Video("long"));
    video["BeginTime"] = Iso(kMinute);
    video["EndTime"] = Iso(kMidnight);
    const std::vector<json> videos = {video};
    const auto failed = RunAndInterruptIn(Export("Gates", videos), Stamping());
    EXPECT_EQ(failed.exit_code, 1);
    ExpectWords(failed, "Gates: failed");
    ExpectFiles({});
    const auto stopped = RunAndInterruptIn(Export("Gates", videos, true), Stamping());
    EXPECT_EQ(stopped.exit_code, 1);
    ExpectWords(stopped, "Gates: stopped\n");
    ExpectFiles({});
}

TEST_F(ClientVideos, VideosThatAreDoneStayBehindAnInterrupt)
{
    SetFault({{"Path", "/api/v1/recordings/2/clip"}, {"Kind", "slow"}, {"BytesPerSecond", 20000}});
    client_.StartRequests({Export("Gates", {Stamped(Video("one", 1, 2)), Video("two", 2)})});
    ASSERT_TRUE(station_.WaitForRequests("/api/v1/recordings/2/clip", 1));
    client_.Interrupt();
    ExpectWords(client_.Finish(), "Gates: stopped");
    ExpectFiles({"Gates/one.mp4"});
    EXPECT_TRUE(RunsFrom(VideoLook(Out("Gates/one.mp4")), kMinute + 11, 0));
}

TEST_F(ClientVideos, ExportThatIsDiscardedGoesWithItsFolder)
{
    BeSlow();
    client_.UseOption("--discard");
    const auto result = RunAndInterruptIn(Export("Gates", {Video("one")}), Fetching());
    ExpectWords(result, "Gates: deleted");
    ExpectFiles({});
    EXPECT_FALSE(Exists(Out("Gates")));
}

TEST_F(ClientVideos, NothingRunsBesideAnExportWithAnOverlay)
{
    const auto result = client_.RunRequests(
        {Export("First", {Stamped(Video("one", 1, 20))}), Export("Second", {Video("two", 2, 2)})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    ExpectFiles({"First/one.mp4", "Second/two.mp4"});
    // The last that was shown of the second before the first had finished.
    const std::size_t end = result.output.find("finished", result.output.find("First "));
    const std::size_t line = result.output.rfind("\nSecond ", end);
    ASSERT_NE(line, std::string::npos) << result.output;
    const std::string shown = result.output.substr(line, result.output.find('\n', line + 1) - line);
    EXPECT_NE(shown.find("waiting"), std::string::npos) << result.output;
}

TEST_F(ClientVideos, ExportsWithoutAnOverlayRunAtOnce)
{
    const json delay = {{"Kind", "delay"}, {"DelayMs", 600000}, {"Count", -1}};
    for (const char* const path : {kClip, "/api/v1/recordings/2/clip"}) {
        json fault = delay;
        fault["Path"] = path;
        SetFault(fault);
    }
    client_.StartRequests({Export("First", {Video("one")}), Export("Second", {Video("two", 2)})});
    EXPECT_TRUE(station_.WaitForRequests(kClip, 1));
    EXPECT_TRUE(station_.WaitForRequests("/api/v1/recordings/2/clip", 1));
    client_.Interrupt();
    const auto result = client_.Finish();
    ExpectWords(result, "First: stopped");
    ExpectWords(result, "Second: stopped");
}

TEST_F(ClientVideos, RecordingThatEndsEarlyGivesWhatThereIs)
{
    json video = Stamped(Video("gate"));
    video["BeginTime"] = Iso(kMidnight - 4);
    video["EndTime"] = Iso(kMidnight + 60);
    const auto result = client_.RunRequests({Export("Gates", {video})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const VideoLook look(Out("Gates/gate.mp4"));
    EXPECT_EQ(look.frames.size(), 100u);
    EXPECT_TRUE(RunsFrom(look, kMidnight - 4, 0));
}

TEST_F(ClientVideos, RecordingWithAGapGivesBothParts)
{
    const std::string later = client_.Path("later.mp4");
    MakeVideo(later, {"-f", "lavfi", "-i", "testsrc2=size=640x360:rate=25:duration=2", "-c:v", "libx264",
                      "-preset", "ultrafast", "-pix_fmt", "yuv420p"});
    const ProgramResult imported = RunStation({"import", QString::fromStdString(later), "--data",
                                               QString::fromStdString(station_.DataFolder()), "--camera", "1",
                                               "--begin", QString::number(kMidnight + 10)});
    ASSERT_EQ(imported.exit_code, 0) << imported.errors;
    json video = Stamped(Video("gate"));
    video["BeginTime"] = Iso(kMidnight - 4);
    video["EndTime"] = Iso(kMidnight + 12);
    const auto result = client_.RunRequests({Export("Gates", {video})});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(Probe(Out("Gates/gate.mp4"))["nb_read_frames"], "150");
    EXPECT_GT(Covered(FrameAt(Out("Gates/gate.mp4"), 5), kBox), 0.95);
}

TEST_F(ClientVideos, TimeWithoutARecordingFailsInTheStationsWords)
{
    json video = Video("gate");
    video["BeginTime"] = Iso(kMidnight + 100);
    video["EndTime"] = Iso(kMidnight + 110);
    const auto result = client_.RunRequests({Export("Gates", {video, Video("other")}, true)});
    EXPECT_EQ(result.exit_code, 1);
    ExpectWords(result, "Gates: failed: ");
    ExpectWords(result, "gate failed: ");
    ExpectFiles({"Gates/other.mp4"});
}

TEST_F(ClientVideos, WhatIsNoVideoIsNotTakenForOne)
{
    SetFault({{"Path", kClip}, {"Kind", "garbage"}, {"Count", -1}});
    const auto plain = client_.RunRequests({Export("Plain", {Video("gate")})});
    EXPECT_EQ(plain.exit_code, 1) << plain.output;
    const auto stamped = client_.RunRequests({Export("Stamped", {Stamped(Video("gate"))})});
    EXPECT_EQ(stamped.exit_code, 1) << stamped.output;
    ExpectWords(stamped, "Stamped: failed");
    EXPECT_FALSE(Exists(Out("Stamped/gate.mp4")));
    EXPECT_EQ(NamesIn(Stamping()), std::vector<std::string>{});
}

TEST_F(ClientVideos, MachineWithoutAFontFailsTheStampAndLeavesNothing)
{
    WriteBytes(client_.Path("fonts.conf"), "<?xml version=\"1.0\"?><fontconfig></fontconfig>");
    client_.SetEnvironment("FONTCONFIG_FILE", QString::fromStdString(client_.Path("fonts.conf")));
    const auto result = client_.RunRequests({Export("Gates", {Stamped(Video("gate", 1, 2))})});
    EXPECT_EQ(result.exit_code, 1);
    ExpectWords(result, "no font");
    ExpectWords(result, "Gates: failed");
    ExpectFiles({});
}

// Room for the plain video and not for the stamped one beside it.
TEST_F(ClientVideos, DiskThatFillsInTheStampLeavesNothingOfTheVideo)
{
    const auto plain = client_.RunRequests({Export("Plain", {Video("gate")})});
    ASSERT_EQ(plain.exit_code, 0) << plain.output;
    const std::uintmax_t size = std::filesystem::file_size(Out("Plain/gate.mp4"));
    const QString script = QString(
                               "mount -t tmpfs -o size=%1k small \"$0\" && { \"$@\"; code=$?; "
                               "find \"$0\" -type f; exit $code; }")
                               .arg(size / 1024 + 64);
    std::filesystem::create_directories(Out("Gates"));
    client_.PutInFront({"unshare", "--user", "--map-root-user", "--mount", "sh", "-c", script,
                        QString::fromStdString(Out("Gates"))});
    const auto result = client_.RunRequests({Export("Gates", {Stamped(Video("gate"))})});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "Gates: failed");
    ExpectWords(result, "No space left on device");
    EXPECT_EQ(result.output.find("Gates/gate.mp4\n"), std::string::npos) << result.output;
    EXPECT_EQ(result.output.find(".mp4\n"), std::string::npos) << result.output;
}

TEST_F(ClientVideos, MissingPluginFailsTheExport)
{
    client_.UseOption("--no-own-plugins");
    const auto result = client_.RunRequests({Export("Gates", {Video("gate")})});
    EXPECT_EQ(result.exit_code, 1);
    ExpectWords(result, "Gates: failed");
    ExpectFiles({});
}
