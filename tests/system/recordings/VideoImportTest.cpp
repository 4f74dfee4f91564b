#include "RecordingsFixture.h"

#include <filesystem>

using nlohmann::json;
using namespace SystemTest;

namespace {

const QStringList kPicture = {"-f", "lavfi", "-i", "testsrc2=size=320x240:rate=25:duration=4"};
const QStringList kTone = {"-f", "lavfi", "-i", "sine=frequency=440:sample_rate=44100:duration=4"};
const QStringList kH264 = {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-g", "50"};

// Videos of any kind as recordings of camera 2, which has the minute before midnight already.
class StationVideoImport : public RecordingsFixture
{
protected:
    std::string Video(const std::string& name, const QStringList& words)
    {
        MakeVideo(folder_.File(name), words);
        return folder_.File(name);
    }

    // Imports at midnight, and gives what the station made of it.
    VideoLook Imported(const std::string& file, int camera = 2)
    {
        MustImport(file, camera, kMidnight);
        return VideoLook(Made(camera));
    }
    std::string Made(int camera = 2) const
    {
        return Recordings() + "/camera-" + std::to_string(camera) + "-20260201-000000-0.mp4";
    }

    // The import ends with that code and words, and all is as it was.
    void ExpectRefusal(const std::string& file, const std::string& words, int camera = 2, int exit_code = 1,
                       const std::string& begin = "2026-02-01T00:00:00Z")
    {
        const auto before = NamesIn(Recordings());
        const json list = json::parse(Get("?camera=2")->body);
        const ProgramResult result = Import(file, camera, begin);
        EXPECT_EQ(result.exit_code, exit_code) << file;
        EXPECT_NE(result.errors.find(words), std::string::npos) << result.errors;
        EXPECT_EQ(NamesIn(Recordings()), before) << file;
        EXPECT_EQ(json::parse(Get("?camera=2")->body), list) << file;
    }
};

std::vector<std::int64_t> TimesOf(const VideoLook& video)
{
    std::vector<std::int64_t> times;
    for (const LookedFrame& frame : video.frames)
        times.push_back(frame.shown_ms);
    return times;
}

int KeyFrames(const VideoLook& video)
{
    int count = 0;
    for (const LookedPacket& packet : video.packets)
        count += packet.is_key ? 1 : 0;
    return count;
}

}  // namespace

TEST_F(StationVideoImport, VideoThatFitsIsKeptByteByByte)
{
    const std::string file = Video("a.mp4", kPicture + kTone + kH264 + QStringList{"-c:a", "aac"});
    const VideoLook source(file);
    const VideoLook made = Imported(file);
    ASSERT_EQ(made.packets.size(), source.packets.size());
    for (std::size_t i = 0; i < made.packets.size(); ++i)
        EXPECT_TRUE(made.packets[i].bytes == source.packets[i].bytes) << i;
    EXPECT_EQ(made.sound_packets, source.sound_packets);
    EXPECT_EQ(json::parse(Get("?camera=2")->body)["Recordings"][0]["EndTime"], "2026-02-01T00:00:04.000Z");
}

TEST_F(StationVideoImport, StreamWithStartCodesIsKeptToo)
{
    const std::string file = Video("a.ts", kPicture + kTone + kH264 + QStringList{"-c:a", "aac"});
    const VideoLook made = Imported(file);
    EXPECT_EQ(made.frames.size(), 100u);
    EXPECT_GT(made.sound_packets, 100);
    EXPECT_EQ(Complaints(Made()), "");
    EXPECT_EQ(VideoLook(Clip(ClipQuery(2, kMidnight + 1, kMidnight + 3))).frames.front().shown_ms, 0);
}

TEST_F(StationVideoImport, OtherKindsAreConverted)
{
    int camera = 1;
    for (const QStringList& kind :
         {QStringList{"a.avi", "-c:v", "mpeg4", "-c:a", "mp3"},
          QStringList{"a.webm", "-c:v", "libvpx", "-c:a", "libopus"},
          QStringList{"a.mkv", "-c:v", "mjpeg", "-pix_fmt", "yuvj422p", "-c:a", "pcm_s16le"},
          QStringList{"b.mkv", "-c:v", "libx264", "-pix_fmt", "yuv444p", "-c:a", "flac"}}) {
        const std::string name = kind[0].toStdString();
        const VideoLook made = Imported(Video(name, kPicture + kTone + kind.mid(1)), ++camera);
        EXPECT_EQ(made.frames.size(), 100u) << name;
        EXPECT_EQ(TimesOf(made), TimesOf(VideoLook(folder_.File(name)))) << name;
        EXPECT_EQ(KeyFrames(made), 2) << name;
        EXPECT_EQ(Probe(Made(camera))["profile"], "High") << name;
        const json sound = Probe(Made(camera), "a");
        EXPECT_EQ(sound["codec_name"], "aac") << name;
        EXPECT_NEAR(std::stod(sound["duration"].get<std::string>()), 4.0, 0.1) << name;
        EXPECT_EQ(Complaints(Made(camera)), "") << name;
    }
}

TEST_F(StationVideoImport, KeyFramesTooFarApartAreMadeAnew)
{
    const VideoLook made = Imported(Video(
        "a.mp4", QStringList{"-f", "lavfi", "-i", "testsrc2=size=160x120:rate=25:duration=14", "-c:v",
                             "libx264", "-pix_fmt", "yuv420p", "-g", "1000", "-x264-params", "scenecut=0"}));
    EXPECT_EQ(made.frames.size(), 350u);
    EXPECT_EQ(KeyFrames(made), 7);
}

TEST_F(StationVideoImport, KeyFramesThatNeedOthersAreMadeAnew)
{
    const VideoLook made =
        Imported(Video("a.mp4", kPicture + QStringList{"-c:v", "libx264", "-pix_fmt", "yuv420p", "-g", "25",
                                                       "-bf", "3", "-x264-params", "open-gop=1:scenecut=0"}));
    EXPECT_EQ(made.frames.size(), 100u);
    EXPECT_EQ(KeyFrames(made), 2);
}

TEST_F(StationVideoImport, OddSizeLosesALine)
{
    const VideoLook made =
        Imported(Video("a.mkv", QStringList{"-f", "lavfi", "-i", "testsrc2=size=321x241:rate=25:duration=1",
                                            "-c:v", "ffv1"}));
    EXPECT_EQ(made.width, 320);
    EXPECT_EQ(made.height, 240);
}

TEST_F(StationVideoImport, FramesAtUnevenTimesKeepThem)
{
    const VideoLook made =
        Imported(Video("a.mkv", kPicture + QStringList{"-vf", "select='not(eq(mod(n,7),3))'", "-vsync", "vfr",
                                                       "-c:v", "mpeg4"}));
    ASSERT_EQ(made.frames.size(), 86u);
    EXPECT_EQ(made.frames[2].shown_ms, 80);
    EXPECT_EQ(made.frames[3].shown_ms, 160);
}

TEST_F(StationVideoImport, TurnedVideoStaysTurned)
{
    const std::string flat = Video("flat.mp4", kPicture + kH264);
    const std::string file =
        Video("a.mp4", {"-i", QString::fromStdString(flat), "-c", "copy", "-metadata:s:v", "rotate=90"});
    Imported(file);
    const auto answer = Get("/2/frame?at=" + std::to_string(kMidnight + 1));
    MakeVideo(folder_.File("upright.png"),
              {"-ss", "1", "-i", QString::fromStdString(file), "-frames:v", "1"});
    const QImage upright(QString::fromStdString(folder_.File("upright.png")));
    const QImage frame = QImage::fromData(QByteArray::fromStdString(answer->body));
    ASSERT_EQ(frame.size(), QSize(240, 320));
    for (const QPoint& corner : {QPoint(8, 8), QPoint(231, 8), QPoint(8, 311), QPoint(231, 311)})
        EXPECT_NEAR(qGray(frame.pixel(corner)), qGray(upright.pixel(corner)), 12);
    const std::string clip = Clip(ClipQuery(2, kMidnight + 1, kMidnight + 2));
    EXPECT_EQ(Probe(clip)["side_data_list"][0]["rotation"], Probe(file)["side_data_list"][0]["rotation"]);
}

TEST_F(StationVideoImport, CutFileIsRefused)
{
    const std::string late = ReadBytes(Video("late.mp4", kPicture + kH264));
    const std::string early =
        ReadBytes(Video("early.mp4", kPicture + kH264 + QStringList{"-movflags", "+faststart"}));
    WriteBytes(folder_.File("half.mp4"), late.substr(0, late.size() / 2));
    ExpectRefusal(folder_.File("half.mp4"), "can't be read as a video");
    WriteBytes(folder_.File("half.mp4"), early.substr(0, early.size() / 2));
    ExpectRefusal(folder_.File("half.mp4"), "is cut short");
}

TEST_F(StationVideoImport, WhatIsNoVideoIsRefused)
{
    WriteBytes(folder_.File("empty.mp4"), "");
    ExpectRefusal(folder_.File("empty.mp4"), "can't be read as a video");
    WriteBytes(folder_.File("notes.txt"), "Minutes of the meeting\nof last Tuesday\n");
    ExpectRefusal(folder_.File("notes.txt"), "video");
    WriteBytes(folder_.File("noise.mp4"), std::string(100000, '\x5a'));
    ExpectRefusal(folder_.File("noise.mp4"), "can't be read as a video");
    ExpectRefusal(Video("tone.m4a", kTone + QStringList{"-c:a", "aac"}), "holds no video");
    ExpectRefusal(Video("still.jpg", kPicture + QStringList{"-frames:v", "1"}), "holds no video");
    WriteBytes(folder_.File("list.m3u8"), "#EXTM3U\n#EXTINF:1,\nhttp://127.0.0.1:1/a.ts\n#EXT-X-ENDLIST\n");
    ExpectRefusal(folder_.File("list.m3u8"), "video");
}

TEST_F(StationVideoImport, TimeThatIsTakenIsRefused)
{
    const std::string file = Video("a.mp4", kPicture + kH264);
    ExpectRefusal(file, "Camera 2 has a recording of that time already: 2026-01-31T23:59:00.000Z/", 2, 1,
                  "2026-01-31T23:59:30Z");
    ExpectRefusal(file, "Camera 2 has a recording of that time already", 2, 1, "2026-01-31T23:58:58Z");
    MustImport(file, 2, kMinute - 4);
    MustImport(file, 2, kMidnight);
}

TEST_F(StationVideoImport, WrongWordsAreUsageErrors)
{
    const std::string file = Video("a.mp4", kPicture + kH264);
    ExpectRefusal(file, "The station has no camera 99", 99);
    ExpectRefusal(file, "--camera must be", 0, 2);
    ExpectRefusal(file, "a video needs --camera N and --begin", 2, 2, "yesterday");
    const ProgramResult folder = Import(folder_.Text(), 2, "2026-02-01T00:00:00Z");
    EXPECT_EQ(folder.exit_code, 2);
    EXPECT_NE(folder.errors.find("--begin is for a video"), std::string::npos) << folder.errors;
}
