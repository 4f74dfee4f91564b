#include "RecordingsFixture.h"

#include <algorithm>

using nlohmann::json;
using namespace SystemTest;

namespace {

using StationClip = RecordingsFixture;

// How many packets from the end on are, byte by byte, those of the recording before its position.
int CopiedFrom(const VideoLook& clip, const VideoLook& recording, std::size_t end)
{
    int count = 0;
    for (auto packet = clip.packets.rbegin(); packet != clip.packets.rend() && end > 0; ++packet, ++count) {
        if (packet->bytes != recording.packets[--end].bytes)
            break;
    }
    return count;
}

}  // namespace

TEST_F(StationClip, CameraThatIsAskedForIsTheStreet)
{
    const json cameras = json::parse(station_.Connect()->Get("/api/v1/cameras")->body);
    const auto answer = Get("?camera=1");
    const json list = json::parse(answer->body);
    EXPECT_EQ(list["Recordings"], json::parse(R"([{"BeginTime":"2026-01-31T23:59:00.000Z",
        "EndTime":"2026-02-01T00:00:00.000Z","Milliseconds":60000}])"));
    EXPECT_EQ(cameras["Cameras"].size(), 12u);
    for (const json& camera : cameras["Cameras"])
        EXPECT_EQ(json::parse(Get("?camera=" + camera["Id"].dump())->body)["Recordings"].size(), 1u);
}

TEST_F(StationClip, SeededRecordingShowsEachFramesTime)
{
    const VideoLook recording(StreetFile());
    EXPECT_EQ(recording.frames.size(), 1500u);
    EXPECT_TRUE(RunsFrom(recording, kMinute, 0));
    EXPECT_EQ(recording.frames.back().shown_ms, 59960);
    EXPECT_EQ(Complaints(StreetFile()), "");
}

TEST_F(StationClip, BeginOnAKeyFrameIsCopiedAsItIs)
{
    const VideoLook clip(Clip(ClipQuery(1, kMinute + 10, kMinute + 20)));
    const VideoLook recording(StreetFile());
    EXPECT_TRUE(RunsFrom(clip, kMinute + 10, 0));
    EXPECT_EQ(clip.frames.size(), 250u);
    EXPECT_EQ(CopiedFrom(clip, recording, 500), 250);
    EXPECT_EQ(spans_, "2026-01-31T23:59:10.000Z/2026-01-31T23:59:20.000Z");
}

TEST_F(StationClip, ProbeSaysLengthAndFramesOfTheCut)
{
    const json stream = Probe(Clip(ClipQuery(1, kMinute + 11, kMinute + 20)));
    EXPECT_EQ(stream["codec_name"], "h264");
    EXPECT_EQ(stream["codec_tag_string"], "avc1");
    EXPECT_EQ(stream["width"], 640);
    EXPECT_EQ(stream["height"], 360);
    EXPECT_EQ(stream["r_frame_rate"], "25/1");
    EXPECT_EQ(stream["start_time"], "0.000000");
    EXPECT_EQ(stream["duration"], "9.000000");
    EXPECT_EQ(stream["nb_frames"], "225");
    EXPECT_EQ(stream["nb_read_frames"], "225");
    EXPECT_EQ(stream["color_space"], "smpte170m");
}

TEST_F(StationClip, OnlyTheFramesBeforeTheFirstKeyFrameAreEncodedAnew)
{
    const std::string path = Clip(ClipQuery(1, "2026-01-31T23:59:10.52Z", "2026-01-31T23:59:20Z"));
    const VideoLook clip(path);
    const VideoLook recording(StreetFile());
    EXPECT_TRUE(RunsFrom(clip, kMinute + 10, 13));
    EXPECT_EQ(clip.frames.size(), 237u);
    // The key frame at 12 s and all behind it; 37 frames come before.
    EXPECT_EQ(CopiedFrom(clip, recording, 500), 200);
    EXPECT_TRUE(clip.packets[0].is_key);
    EXPECT_TRUE(clip.packets[37].is_key);
    EXPECT_EQ(std::count_if(clip.packets.begin(), clip.packets.end(), [](const auto& p) { return p.is_key; }),
              5);
    EXPECT_EQ(Complaints(path), "");
}

TEST_F(StationClip, FirstFrameIsTheOneThatShowsAtTheBegin)
{
    for (const auto& [begin, number] : {std::pair("10", 0), std::pair("10.039", 0), std::pair("10.04", 1),
                                        std::pair("10.999", 24), std::pair("11.96", 24)}) {
        const std::string at = std::string("2026-01-31T23:59:") + begin + "Z";
        const VideoLook clip(Clip(ClipQuery(1, at, "2026-01-31T23:59:13Z")));
        const std::int64_t second = kMinute + std::stoi(begin);
        EXPECT_TRUE(RunsFrom(clip, second, number)) << begin;
        EXPECT_EQ(clip.frames.back().time.Count(), FrameTime({kMinute + 12, 24}).Count()) << begin;
    }
}

TEST_F(StationClip, LastFrameIsTheLastBeforeTheEnd)
{
    const VideoLook clip(Clip(ClipQuery(1, "2026-01-31T23:59:10Z", "2026-01-31T23:59:10.041Z")));
    EXPECT_EQ(clip.frames.size(), 2u);
    EXPECT_EQ(
        VideoLook(Clip(ClipQuery(1, "2026-01-31T23:59:10.41Z", "2026-01-31T23:59:10.42Z"))).frames.size(),
        1u);
}

TEST_F(StationClip, AviHasTheSameFrames)
{
    for (const auto& [begin, count] : {std::pair("10", 250u), std::pair("10.52", 237u)}) {
        const std::string at = std::string("2026-01-31T23:59:") + begin + "Z";
        const std::string path = Clip(ClipQuery(1, at, "2026-01-31T23:59:20Z", "avi"), "clip.avi");
        EXPECT_EQ(ReadBytes(path).substr(0, 4), "RIFF");
        const VideoLook clip(path);
        EXPECT_EQ(clip.frames.size(), count);
        EXPECT_TRUE(RunsFrom(clip, kMinute + 10, 250 - static_cast<int>(count)));
        EXPECT_EQ(Complaints(path), "");
        const json stream = Probe(path);
        EXPECT_EQ(stream["codec_name"], "h264");
        EXPECT_EQ(stream["avg_frame_rate"], "25/1");
    }
}

TEST_F(StationClip, TablesOfAnMp4StandInFront)
{
    const std::string bytes = ReadBytes(Clip(ClipQuery(1, kMinute + 3, kMinute + 5)));
    EXPECT_LT(bytes.find("moov"), bytes.find("mdat"));
    EXPECT_EQ(headers_.find("Content-Type")->second, "video/mp4");
}

TEST_F(StationClip, SameQuestionHasTheSameTagAndParts)
{
    const std::string query = ClipQuery(1, kMinute + 3, kMinute + 9);
    const std::string whole = ReadBytes(Clip(query));
    const std::string tag = headers_.find("ETag")->second;
    const httplib::Headers rest = {{"Range", "bytes=1000-"}, {"If-Range", tag}};
    const auto answer = station_.Connect()->Get("/api/v1/recordings" + query, rest);
    EXPECT_EQ(answer->status, 206);
    EXPECT_TRUE(answer->body == whole.substr(1000));
    Clip(ClipQuery(1, kMinute + 4, kMinute + 9));
    EXPECT_NE(headers_.find("ETag")->second, tag);
}

TEST_F(StationClip, NothingIsLeftOfACutThatWasServed)
{
    Clip(ClipQuery(1, kMinute + 3, kMinute + 9));
    Clip(ClipQuery(2, kMinute + 3, kMinute + 9));
    station_.Stop();
    EXPECT_EQ(NamesIn(station_.DataFolder() + "/cuts"), std::vector<std::string>{});
}

TEST_F(StationClip, FrameIsTheOneThatShows)
{
    for (const auto& [at, number] : {std::pair("11", 0), std::pair("11.52", 13), std::pair("11.999", 24)}) {
        const auto answer = Get(std::string("/1/frame?at=2026-01-31T23:59:") + at + "Z");
        ASSERT_EQ(answer->status, 200) << answer->body;
        EXPECT_EQ(answer->get_header_value("Content-Type"), "image/jpeg");
        const QImage image = QImage::fromData(QByteArray::fromStdString(answer->body), "JPG");
        EXPECT_EQ(image.size(), QSize(640, 360));
        EXPECT_EQ(ReadTime(image).second, kMinute + 11) << at;
        EXPECT_EQ(ReadTime(image).number, number) << at;
    }
}

TEST_F(StationClip, TimeWithoutRecordingIsNotFound)
{
    for (const std::string& query :
         {ClipQuery(1, kMidnight, kMidnight + 10), ClipQuery(1, kMinute - 10, kMinute),
          ClipQuery(99, kMinute, kMidnight), std::string("/1/frame?at=2026-02-01T00:00:00Z"),
          std::string("/99/frame?at=2026-01-31T23:59:30Z"), std::string("?camera=99")}) {
        const auto answer = Get(query);
        EXPECT_EQ(answer->status, 404) << query;
        const json body = json::parse(answer->body);
        EXPECT_EQ(body["ErrorModule"], 24) << query;
        EXPECT_EQ(body["ErrorCode"], 4) << query;
    }
}

TEST_F(StationClip, WrongQuestionsAreRefused)
{
    const std::string day = std::to_string(kMinute + 86401);
    for (const std::string& query : {std::string("/1/clip"),
                                     std::string("/1/clip?begin=1"),
                                     ClipQuery(1, "now", "then"),
                                     ClipQuery(1, kMinute + 5, kMinute + 5),
                                     ClipQuery(1, kMinute + 6, kMinute + 5),
                                     ClipQuery(1, std::to_string(kMinute), day),
                                     ClipQuery(1, "1", "2", "mov"),
                                     ClipQuery(0, 1, 2),
                                     ClipQuery(-1, 1, 2),
                                     ClipQuery(1, "-5", "5"),
                                     ClipQuery(1, "1.", "2"),
                                     ClipQuery(1, "1e3", "2e3"),
                                     ClipQuery(1, "99999999999999999999", "999999999999999999999"),
                                     std::string("/x/clip?begin=1&end=2"),
                                     std::string("/1/frame"),
                                     std::string("/1/frame?at=noon"),
                                     std::string("/x/frame?at=1"),
                                     std::string(""),
                                     std::string("?camera=x"),
                                     std::string("?camera=0"),
                                     std::string("?camera=1%20OR%201")}) {
        const auto answer = Get(query);
        EXPECT_EQ(answer->status, 400) << query;
        const json body = json::parse(answer->body);
        EXPECT_EQ(body["ErrorModule"], 24) << query;
        EXPECT_EQ(body["ErrorCode"], 1) << query;
    }
}

TEST_F(StationClip, RecordingThatIsDamagedIsToldAndLeavesNothing)
{
    const std::string bytes = ReadBytes(StreetFile());
    for (const std::string& damaged : {std::string(), std::string("no video"), bytes.substr(0, 20000)}) {
        WriteBytes(StreetFile(), damaged);
        const auto answer = Get(ClipQuery(1, kMinute + 30, kMinute + 40));
        EXPECT_EQ(answer->status, 500);
        EXPECT_EQ(json::parse(answer->body)["ErrorCode"], 5);
        EXPECT_EQ(Get("/1/frame?at=" + std::to_string(kMinute + 30))->status, 500);
    }
    EXPECT_EQ(NamesIn(station_.DataFolder() + "/cuts"), std::vector<std::string>{});
}

TEST_F(StationClip, ManyClientsAtOnceGetTheirOwnCuts)
{
    std::vector<std::thread> clients;
    std::atomic<int> good{0};
    for (int i = 0; i < 8; ++i)
        clients.emplace_back([&, i] {
            const auto answer = Get(ClipQuery(1 + i, kMinute + i, kMinute + i + 4));
            if (!answer || answer->status != 200)
                return;
            WriteBytes(folder_.File(std::to_string(i)), answer->body);
            good += RunsFrom(VideoLook(folder_.File(std::to_string(i))), kMinute + i, 0) ? 1 : 0;
        });
    for (std::thread& client : clients)
        client.join();
    EXPECT_EQ(good, 8);
}
