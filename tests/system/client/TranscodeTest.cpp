#include "VideoClientFixture.h"

#include <gtest/gtest.h>
#include <QRect>

using nlohmann::json;
using namespace SystemTest;

namespace {

class ClientTranscoding : public VideoClientFixture
{
protected:
    std::string Out(const std::string& name) const { return client_.ExportFolder() + name; }

    // A moving picture without sound, below the save folder.
    void MakeSource(const std::string& name, int seconds) const
    {
        std::filesystem::create_directories(std::filesystem::u8path(Out(name)).parent_path());
        MakeVideo(Out(name),
                  {"-f", "lavfi", "-i", QString("testsrc2=size=640x360:rate=25:duration=%1").arg(seconds),
                   "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p"});
    }
    static json File(const std::string& source, const std::string& target)
    {
        return {{"SourceFile", source},
                {"SaveFile", target},
                {"WatermarkText", "\xE2\x96\x88\xE2\x96\x88\xE2\x96\x88"},
                {"WatermarkKind", 5}};
    }
    static json Request(const std::vector<json>& files)
    {
        return {{"TranscodingRequest", {{"TaskName", "Stamping"}, {"Files", files}}}};
    }
    ClientRun::Result Run(const std::vector<json>& files) { return client_.RunRequests({Request(files)}); }

    // Refused before anything is done, with words on the member at that place.
    void ExpectRefused(const json& request, const std::string& words)
    {
        const auto result = client_.RunRequests({request});
        EXPECT_EQ(result.exit_code, 2) << result.output;
        ExpectWords(result, words);
    }
};

constexpr QRect kMiddle(300, 172, 40, 16);
constexpr QRect kTop(0, 0, 640, 100);

}  // namespace

TEST_F(ClientTranscoding, ResultShowsTheWatermarkAndElseTheSource)
{
    UseWatermark({{"font_size", 90}, {"transparency", 0}});
    MakeSource("gate.mp4", 2);
    const auto result = Run({File("gate.mp4", "Stamped/gate.mp4")});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    ExpectWords(result, "Stamping: finished");
    ExpectWords(result, "wrote " + Out("Stamped/gate.mp4"));
    EXPECT_EQ(Probe(Out("Stamped/gate.mp4"))["nb_read_frames"], "50");
    const QImage before = FrameAt(Out("gate.mp4"), 1);
    const QImage after = FrameAt(Out("Stamped/gate.mp4"), 1);
    EXPECT_GT(Distance(before, after, kMiddle), 20);
    EXPECT_LT(Distance(before, after, kTop), 3);
    ExpectFiles({"Stamped/gate.mp4", "gate.mp4"});
}

TEST_F(ClientTranscoding, SampleOfTheDocumentsRuns)
{
    MakeSource("gate.mp4", 2);
    const auto result = client_.Run({"run", QString(DOCS_FOLDER) + "/requests/transcode.sample.json"});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    ExpectFiles({"Stamped/gate tiled.avi", "Stamped/gate.jpg", "Stamped/gate.mp4", "gate.mp4"});
    EXPECT_EQ(ReadBytes(Out("Stamped/gate tiled.avi")).substr(0, 4), "RIFF");
    EXPECT_EQ(QImage(QString::fromStdString(Out("Stamped/gate.jpg"))).size(), QSize(640, 360));
}

TEST_F(ClientTranscoding, ProgressCountsTheResults)
{
    MakeSource("gate.mp4", 2);
    const auto result = Run({File("gate.mp4", "Stamped//./gate.mp4")});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const std::string kilobytes =
        std::to_string((std::filesystem::file_size(Out("Stamped/gate.mp4")) + 1023) / 1024);
    ExpectWords(result, "  " + kilobytes + " kB");
}

TEST_F(ClientTranscoding, NamesOfAnyScriptWithBlanksReachTheDisk)
{
    MakeSource("录像 甲/大门 南.mp4", 1);
    json file = File("录像 甲/大门 南.mp4", "水印 بوابة/大门 南 🚪.mp4");
    file["CaptureImage"] = true;
    const auto result = Run({file});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    ExpectFiles({"录像 甲/大门 南.mp4", "水印 بوابة/大门 南 🚪.jpg", "水印 بوابة/大门 南 🚪.mp4"});
}

TEST_F(ClientTranscoding, SourceIsDeletedOnlyWhenItsResultIsWhole)
{
    MakeSource("good.mp4", 1);
    WriteBytes(Out("bad.mp4"), "no video");
    json good = File("good.mp4", "good-out.mp4");
    json bad = File("bad.mp4", "bad-out.mp4");
    good["DeleteSource"] = true;
    bad["DeleteSource"] = true;
    const auto result = Run({good, bad});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "Stamping: failed");
    ExpectFiles({"bad.mp4", "good-out.mp4"});
}

TEST_F(ClientTranscoding, SourceThatIsMissingIsToldAndLeavesNothing)
{
    const auto result = Run({File("missing.mp4", "out.mp4")});
    EXPECT_EQ(result.exit_code, 1);
    ExpectWords(result, "Stamping: failed: No such file");
    ExpectFiles({});
}

TEST_F(ClientTranscoding, SourceThatIsNoVideoOrIsCutFailsAndKeepsTheFileThatWasThere)
{
    MakeSource("whole.mp4", 2);
    WriteBytes(Out("cut.mp4"), ReadBytes(Out("whole.mp4")).substr(0, 20000));
    WriteBytes(Out("text.mp4"), "no video");
    WriteBytes(Out("out.mp4"), "there before");
    for (const char* const source : {"cut.mp4", "text.mp4"}) {
        const auto result = Run({File(source, "out.mp4")});
        EXPECT_EQ(result.exit_code, 1) << result.output;
        ExpectWords(result, std::string("trouble: "));
        ExpectWords(result, source);
        EXPECT_EQ(ReadBytes(Out("out.mp4")), "there before");
    }
    ExpectFiles({"cut.mp4", "out.mp4", "text.mp4", "whole.mp4"});
}

TEST_F(ClientTranscoding, TargetThatCannotBeWrittenFailsAndLeavesNothing)
{
    MakeSource("gate.mp4", 1);
    std::filesystem::create_directories(Out("out.mp4/inside"));
    const auto result = Run({File("gate.mp4", "out.mp4")});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "Stamping: failed: ");
    ExpectFiles({"gate.mp4"});
}

TEST_F(ClientTranscoding, FolderThatCannotBeMadeIsToldBeforeAnythingStarts)
{
    MakeSource("gate.mp4", 1);
    ExpectRefused(Request({File("gate.mp4", "gate.mp4/out.mp4")}),
                  "/TranscodingRequest/Files/0/SaveFile: the folder " + Out("gate.mp4/") + " can't be made");
    ExpectFiles({"gate.mp4"});
}

// Whoever runs the tests may be allowed to write everywhere, but not on a disk that is mounted for reading.
TEST_F(ClientTranscoding, FolderThatIsNotWritableFailsAndLeavesNothing)
{
    MakeSource("gate.mp4", 1);
    std::filesystem::create_directories(Out("closed"));
    client_.PutInFront({"unshare", "--user", "--map-root-user", "--mount", "sh", "-c",
                        "mount -t tmpfs -o ro closed \"$0\" && exec \"$@\"",
                        QString::fromStdString(Out("closed"))});
    const auto result = Run({File("gate.mp4", "closed/out.mp4")});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "Stamping: failed: Read-only file system");
    ExpectFiles({"gate.mp4"});
}

TEST_F(ClientTranscoding, DiskThatIsFullFailsAndHasNoHalfFile)
{
    MakeSource("gate.mp4", 4);
    std::filesystem::create_directories(Out("small"));
    client_.PutInFront({"unshare", "--user", "--map-root-user", "--mount", "sh", "-c",
                        "mount -t tmpfs -o size=64k small \"$0\" && { \"$@\"; code=$?; find \"$0\" -type f; "
                        "exit $code; }",
                        QString::fromStdString(Out("small"))});
    const auto result = Run({File("gate.mp4", "small/out.mp4")});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "Stamping: failed: No space left on device");
    EXPECT_EQ(result.output.find("\n" + Out("small/out.mp4") + "\n"), std::string::npos) << result.output;
    ExpectFiles({"gate.mp4"});
}

TEST_F(ClientTranscoding, MachineWithoutAFontFailsAndSaysSo)
{
    MakeSource("gate.mp4", 1);
    WriteBytes(client_.Path("fonts.conf"), "<?xml version=\"1.0\"?><fontconfig></fontconfig>");
    client_.SetEnvironment("FONTCONFIG_FILE", QString::fromStdString(client_.Path("fonts.conf")));
    const auto result = Run({File("gate.mp4", "out.mp4")});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "no font");
    ExpectFiles({"gate.mp4"});
}

TEST_F(ClientTranscoding, RequestWithoutAnyTextFailsAndSaysSo)
{
    MakeSource("gate.mp4", 1);
    const auto result = Run({{{"SourceFile", "gate.mp4"}, {"SaveFile", "out.mp4"}}});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "there is no watermark text");
    ExpectFiles({"gate.mp4"});
}

TEST_F(ClientTranscoding, PictureThatCannotBeSavedIsToldAndTheVideoStays)
{
    MakeSource("gate.mp4", 1);
    std::filesystem::create_directories(Out("out.jpg"));
    json file = File("gate.mp4", "out.mp4");
    file["CaptureImage"] = true;
    const auto result = Run({file});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "Stamping: finished");
    ExpectWords(result, Out("out.jpg") + " can't be opened");
    ExpectFiles({"gate.mp4", "out.mp4"});
}

TEST_F(ClientTranscoding, InterruptInTheMiddleLeavesNoHalfFileAndKeepsWhatIsDone)
{
    MakeSource("short.mp4", 1);
    MakeSource("long.mp4", 120);
    json last = File("long.mp4", "long-out.mp4");
    last["DeleteSource"] = true;
    client_.StartRequests(
        {Request({File("short.mp4", "short-out.mp4"), last, File("short.mp4", "third.mp4")})});
    WaitUntil([this] { return Exists(Out("short-out.mp4")); });
    WaitForWorkIn(Stamping());
    client_.Interrupt();
    const auto result = client_.Finish();
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "Stamping: stopped");
    ExpectFiles({"long.mp4", "short-out.mp4", "short.mp4"});
}

// Its folder holds files of the user, so nothing there is deleted.
TEST_F(ClientTranscoding, InterruptThatDiscardsStopsItAndDeletesNothing)
{
    MakeSource("long.mp4", 120);
    WriteBytes(Out("notes.txt"), "of the user");
    client_.UseOption("--discard");
    const json waiting = {{"TranscodingRequest", {{"Files", {File("long.mp4", "other.mp4")}}}}};
    std::vector<json> requests(7, waiting);
    requests[0] = Request({File("long.mp4", "out.mp4")});
    for (std::size_t i = 1; i < requests.size(); ++i)
        requests[i]["TranscodingRequest"]["Files"][0]["SaveFile"] = "other-" + std::to_string(i) + ".mp4";
    client_.StartRequests(requests);
    WaitForWorkIn(Stamping());
    ASSERT_TRUE(client_.WaitForOutput("other-6\\.mp4 +")) << "the last is shown when all are handed over";
    client_.Interrupt();
    const auto result = client_.Finish();
    EXPECT_EQ(result.exit_code, 1) << result.output;
    ExpectWords(result, "Stamping: stopped");
    ExpectWords(result, "other-6.mp4: stopped");
    ExpectFiles({"long.mp4", "notes.txt"});
}

TEST_F(ClientTranscoding, RequestThatWouldLoseAFileIsRefused)
{
    MakeSource("a.mp4", 1);
    const std::string before = ReadBytes(Out("a.mp4"));
    const std::string place = "/TranscodingRequest/Files: ";
    ExpectRefused(Request({File("a.mp4", "a.mp4")}), place + Out("a.mp4") + " would be written over itself");
    ExpectRefused(Request({File("a.mp4", "./x/../a.mp4")}), "a.mp4 would be written over itself");
    ExpectRefused(Request({File("a.mp4", "b.mp4"), File("a.mp4", "./b.mp4")}),
                  place + Out("b.mp4") + " would be written twice");
    json first = File("a.mp4", "b.mp4");
    first["DeleteSource"] = true;
    ExpectRefused(Request({first, File("a.mp4", "c.mp4")}), "a.mp4 would be deleted before its turn");
    EXPECT_EQ(ReadBytes(Out("a.mp4")), before);
    ExpectFiles({"a.mp4"});
}

TEST_F(ClientTranscoding, EachDepartureFromTheSchemaIsToldWithItsPath)
{
    const std::string files = "/TranscodingRequest/Files/0";
    struct Case
    {
        const char* member;
        json value;
        std::string path;
    };
    const std::vector<Case> cases = {{"SourceFile", "", files + "/SourceFile"},
                                     {"SaveFile", "folder/", files + "/SaveFile"},
                                     {"SaveFile", "gate.jpg", files + "/SaveFile"},
                                     {"SaveFile", ".mp4", files + "/SaveFile"},
                                     {"WatermarkText", 1, files + "/WatermarkText"},
                                     {"WatermarkKind", 6, files + "/WatermarkKind"},
                                     {"DeleteSource", 1, files + "/DeleteSource"},
                                     {"CaptureImage", "true", files + "/CaptureImage"},
                                     {"CaptureImages", true, files}};
    for (const Case& each : cases) {
        json request = Request({File("a.mp4", "b.mp4")});
        request["TranscodingRequest"]["Files"][0][each.member] = each.value;
        ExpectRefused(request, each.path + ": ");
    }
    ExpectRefused(Request({}), "/TranscodingRequest/Files: ");
    ExpectRefused({{"TranscodingRequest", {{"TaskName", "x"}}}}, "/TranscodingRequest: ");
    ExpectRefused({{"TranscodingRequest", json::array()}}, "/TranscodingRequest: ");
    json no_target = Request({{{"SourceFile", "a.mp4"}}});
    ExpectRefused(no_target, files + ": ");
}
