#include "RecordingsFixture.h"

#include <chrono>
#include <thread>

using nlohmann::json;
using namespace SystemTest;

namespace {

// Cuts over several recordings: of camera 1, behind its seeded minute.
class StationClipJoin : public RecordingsFixture
{
protected:
    // A copy of four seconds of the seeded minute, whose frames keep saying their own time.
    std::string FourSeconds() { return Clip(ClipQuery(1, kMinute + 20, kMinute + 24), "four.mp4"); }

    std::string Made(const QString& source, const QStringList& more)
    {
        const std::string path = folder_.File("made.mp4");
        MakeVideo(path,
                  QStringList{"-f", "lavfi", "-i", source, "-c:v", "libx264", "-pix_fmt", "yuv420p"} + more);
        return path;
    }
};

}  // namespace

TEST_F(StationClipJoin, RecordingsThatFollowEachOtherAreOne)
{
    MustImport(FourSeconds(), 1, kMidnight);
    const json list = json::parse(Get("?camera=1")->body)["Recordings"];
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0]["Milliseconds"], 64000);
    const std::string path = Clip(ClipQuery(1, "2026-01-31T23:59:57.52Z", "2026-02-01T00:00:03.2Z"));
    EXPECT_EQ(spans_, "2026-01-31T23:59:57.520Z/2026-02-01T00:00:03.200Z");
    const VideoLook clip(path);
    ASSERT_EQ(clip.frames.size(), 62u + 80u);
    EXPECT_EQ(clip.frames[0].time.Count(), FrameTime({kMinute + 57, 13}).Count());
    EXPECT_EQ(clip.frames[61].time.Count(), FrameTime({kMinute + 59, 24}).Count());
    EXPECT_EQ(clip.frames[62].time.Count(), FrameTime({kMinute + 20, 0}).Count());
    for (std::size_t i = 0; i < clip.frames.size(); ++i)
        EXPECT_EQ(clip.frames[i].shown_ms, static_cast<std::int64_t>(i) * 40);
    EXPECT_EQ(Complaints(path), "");
}

TEST_F(StationClipJoin, GapIsLeftOutAndTold)
{
    MustImport(FourSeconds(), 1, kMidnight + 10);
    const std::string path = Clip(ClipQuery(1, kMidnight - 2, kMidnight + 30));
    EXPECT_EQ(spans_,
              "2026-01-31T23:59:58.000Z/2026-02-01T00:00:00.000Z, "
              "2026-02-01T00:00:10.000Z/2026-02-01T00:00:14.000Z");
    const json stream = Probe(path);
    EXPECT_EQ(stream["nb_read_frames"], "150");
    EXPECT_EQ(stream["duration"], "6.000000");
    EXPECT_EQ(json::parse(Get("?camera=1")->body)["Recordings"].size(), 2u);
}

TEST_F(StationClipJoin, RecordingThatEndsEarlyGivesWhatThereIs)
{
    const VideoLook clip(Clip(ClipQuery(1, kMidnight - 3, kMidnight + 3600)));
    EXPECT_EQ(spans_, "2026-01-31T23:59:57.000Z/2026-02-01T00:00:00.000Z");
    EXPECT_EQ(clip.frames.size(), 75u);
    const VideoLook late(Clip(ClipQuery(1, kMinute - 3600, kMinute + 1)));
    EXPECT_EQ(spans_, "2026-01-31T23:59:00.000Z/2026-01-31T23:59:01.000Z");
    EXPECT_TRUE(RunsFrom(late, kMinute, 0));
}

TEST_F(StationClipJoin, OtherParameterSetsAndFramesOutOfOrderDecodeThroughout)
{
    MustImport(
        Made("testsrc2=size=640x360:rate=25:duration=4", {"-bf", "3", "-g", "50", "-profile:v", "high"}), 1,
        kMidnight);
    for (const char* const format : {"mp4", "avi"}) {
        const std::string path = Clip(ClipQuery(1, "2026-01-31T23:59:57.52Z", "2026-02-01T00:00:04Z", format),
                                      std::string("clip.") + format);
        EXPECT_EQ(Complaints(path), "") << format;
        const VideoLook clip(path);
        EXPECT_EQ(clip.frames.size(), 62u + 100u) << format;
        EXPECT_EQ(clip.frames[61].time.Count(), FrameTime({kMinute + 59, 24}).Count()) << format;
    }
}

TEST_F(StationClipJoin, CutOfFramesOutOfOrderBeginsExactlyAndEndsAFewLate)
{
    MustImport(Made("testsrc2=size=640x360:rate=25:duration=8",
                    {"-bf", "3", "-g", "50", "-x264-params", "open-gop=0:scenecut=0"}),
               1, kMidnight);
    const VideoLook whole(Clip(ClipQuery(1, kMidnight, kMidnight + 8)));
    EXPECT_EQ(whole.frames.size(), 200u);
    const std::string path = Clip(ClipQuery(1, "2026-02-01T00:00:01Z", "2026-02-01T00:00:05Z"));
    const VideoLook clip(path);
    EXPECT_GE(clip.frames.size(), 100u);
    EXPECT_LE(clip.frames.size(), 103u);
    for (std::size_t i = 0; i < clip.frames.size() && i < 100; ++i)
        EXPECT_EQ(clip.frames[i].shown_ms, static_cast<std::int64_t>(i) * 40) << i;
    EXPECT_EQ(Complaints(path), "");
}

TEST_F(StationClipJoin, RecordingOfAnotherTimeScaleGoesOnAtItsOwnPace)
{
    const std::string path =
        Made("testsrc2=size=640x360:rate=30:duration=2", {"-bf", "2", "-video_track_timescale", "90000"});
    MustImport(path, 1, kMidnight);
    const VideoLook clip(Clip(ClipQuery(1, "2026-01-31T23:59:58.52Z", "2026-02-01T00:00:02Z")));
    ASSERT_EQ(clip.frames.size(), 37u + 60u);
    EXPECT_EQ(clip.frames[36].shown_ms, 36 * 40);
    EXPECT_EQ(clip.frames[37].shown_ms, 37 * 40);
    EXPECT_NEAR(static_cast<double>(clip.frames[67].shown_ms), 37 * 40 + 1000, 1);
}

TEST_F(StationClipJoin, OtherSizeIsFittedIntoTheFirst)
{
    MustImport(Made("color=c=white:size=240x360:rate=25:duration=2", {}), 1, kMidnight);
    const std::string path = Clip(ClipQuery(1, kMidnight - 1, kMidnight + 2));
    const VideoLook clip(path);
    EXPECT_EQ(clip.frames.size(), 75u);
    EXPECT_EQ(clip.width, 640);
    EXPECT_EQ(clip.height, 360);
    EXPECT_EQ(Complaints(path), "");
    const auto answer = Get("/1/frame?at=" + std::to_string(kMidnight + 1));
    EXPECT_EQ(QImage::fromData(QByteArray::fromStdString(answer->body)).size(), QSize(240, 360));
    MakeVideo(folder_.File("last.png"), {"-ss", "2.5", "-i", QString::fromStdString(path), "-frames:v", "1"});
    const QImage last(QString::fromStdString(folder_.File("last.png")));
    EXPECT_LT(qGray(last.pixel(20, 180)), 20);
    EXPECT_GT(qGray(last.pixel(320, 180)), 235);
    EXPECT_LT(qGray(last.pixel(620, 180)), 20);
}

TEST_F(StationClipJoin, ClientThatGoesAwayEndsTheMaking)
{
    // Twenty minutes of another size, which are encoded anew: that takes the better part of a minute.
    MustImport(Made("color=c=white:size=160x120:rate=25:duration=1200", {"-preset", "ultrafast"}), 1,
               kMidnight);
    const auto client = station_.Connect();
    std::thread asking(
        [&] { client->Get("/api/v1/recordings" + ClipQuery(1, kMidnight - 1, kMidnight + 1200)); });
    const std::string cuts = station_.DataFolder() + "/cuts";
    while (NamesIn(cuts).empty())
        std::this_thread::yield();
    client->stop();
    asking.join();
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    while (!NamesIn(cuts).empty() && std::chrono::steady_clock::now() < limit)
        std::this_thread::yield();
    EXPECT_EQ(NamesIn(cuts), std::vector<std::string>{});
    EXPECT_EQ(Get("?camera=1")->status, 200);
}

TEST_F(StationClipJoin, SoundIsCopiedAndStaysWithThePicture)
{
    const std::string path = folder_.File("sound.mp4");
    MakeVideo(path, {"-f", "lavfi", "-i", "testsrc2=size=640x360:rate=25:duration=6", "-f", "lavfi", "-i",
                     "sine=frequency=440:sample_rate=48000:duration=6", "-c:v", "libx264", "-pix_fmt",
                     "yuv420p", "-g", "50", "-c:a", "aac", "-shortest"});
    MustImport(path, 1, kMidnight);
    const std::string clip = Clip(ClipQuery(1, "2026-02-01T00:00:01Z", "2026-02-01T00:00:05Z"));
    const json sound = Probe(clip, "a");
    EXPECT_EQ(sound["codec_name"], "aac");
    EXPECT_NEAR(std::stod(sound["duration"].get<std::string>()), 4.0, 0.05);
    EXPECT_NEAR(std::stod(sound["start_time"].get<std::string>()), 0.0, 0.03);
    EXPECT_EQ(Complaints(clip), "");
}
