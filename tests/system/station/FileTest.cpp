#include "station/Http/FileAnswer.h"
#include "StationFixture.h"

#include <chrono>
#include <fstream>
#include <string>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kFirmware[] = "/files/firmware-2.4.1.bin";

class StationFiles : public StationFixture
{
protected:
    httplib::Result Get(const std::string& path, const httplib::Headers& headers = {})
    {
        return station_.Connect()->Get(path, headers);
    }
    int StatusOf(const std::string& path) { return Get(path)->status; }
    std::string Firmware() { return Get(kFirmware)->body; }
};

std::string Described(const Station::ByteRange& range)
{
    if (range.kind == Station::ByteRange::Kind::Whole)
        return "whole";
    return range.kind == Station::ByteRange::Kind::Outside
               ? "outside"
               : std::to_string(range.first) + "+" + std::to_string(range.count);
}

}  // namespace

TEST(StationRange, AskedForInEveryForm)
{
    using Station::ReadRange;
    EXPECT_EQ(Described(ReadRange("bytes=0-", 10)), "0+10");
    EXPECT_EQ(Described(ReadRange("bytes=3-5", 10)), "3+3");
    EXPECT_EQ(Described(ReadRange("bytes=3-99", 10)), "3+7");
    EXPECT_EQ(Described(ReadRange("bytes=9-", 10)), "9+1");
    EXPECT_EQ(Described(ReadRange("bytes=-4", 10)), "6+4");
    EXPECT_EQ(Described(ReadRange("bytes=-99", 10)), "0+10");
    for (const char* outside : {"bytes=10-", "bytes=99-100", "bytes=-0"})
        EXPECT_EQ(Described(ReadRange(outside, 10)), "outside") << outside;
    EXPECT_EQ(Described(ReadRange("bytes=0-", 0)), "outside");
    for (const char* nonsense : {"", "bytes=", "bytes=5-3", "bytes=a-b", "bytes=1-2,4-5", "rows=1-2",
                                 "bytes=5", "bytes=-", "bytes= 1-2", "bytes=99999999999999999999-"})
        EXPECT_EQ(Described(ReadRange(nonsense, 10)), "whole") << nonsense;
}

TEST_F(StationFiles, LogOfACameraIsText)
{
    const auto answer = Get("/files/camera-1.log");
    ASSERT_EQ(answer->status, 200);
    EXPECT_EQ(answer->get_header_value("Content-Type"), "text/plain; charset=utf-8");
    EXPECT_EQ(answer->get_header_value_count("Content-Type"), 1u);
    EXPECT_NE(answer->body.find(", level "), std::string::npos);
}

TEST_F(StationFiles, PartsOfAFileMakeTheWhole)
{
    const std::string whole = Firmware();
    ASSERT_EQ(whole.size(), 3u << 20);
    const auto first = Get(kFirmware, {httplib::make_range_header({{0, 999}})});
    const auto rest = Get(kFirmware, {httplib::make_range_header({{1000, -1}})});
    EXPECT_EQ(first->status, 206);
    EXPECT_EQ(first->get_header_value("Content-Range"), "bytes 0-999/3145728");
    EXPECT_EQ(rest->get_header_value("Content-Range"), "bytes 1000-3145727/3145728");
    EXPECT_TRUE(first->body + rest->body == whole);
}

TEST_F(StationFiles, RangeBehindTheEndIsRefusedWithTheSize)
{
    const auto answer = Get(kFirmware, {{"Range", "bytes=3145728-"}});
    EXPECT_EQ(answer->status, 416);
    EXPECT_EQ(answer->get_header_value("Content-Range"), "bytes */3145728");
}

TEST_F(StationFiles, PartOfAnotherVersionIsTheWhole)
{
    const std::string tag = Get(kFirmware)->get_header_value("ETag");
    EXPECT_EQ(Get(kFirmware, {{"Range", "bytes=5-9"}, {"If-Range", tag}})->status, 206);
    const auto other = Get(kFirmware, {{"Range", "bytes=5-9"}, {"If-Range", "\"old\""}});
    EXPECT_EQ(other->status, 200);
    EXPECT_EQ(other->body.size(), 3u << 20);
}

TEST_F(StationFiles, VersionThatTheClientHasIsNotSentAgain)
{
    const std::string tag = Get(kFirmware)->get_header_value("ETag");
    const auto answer = Get(kFirmware, {{"If-None-Match", tag}});
    EXPECT_EQ(answer->status, 304);
    EXPECT_EQ(answer->body, "");
    std::ofstream(station_.DataFolder() + "/files/firmware-2.4.1.bin") << "another";
    EXPECT_EQ(Get(kFirmware, {{"If-None-Match", tag}})->body, "another");
}

TEST_F(StationFiles, HeadTellsTheSizeAlone)
{
    const auto answer = station_.Connect()->Head(kFirmware);
    EXPECT_EQ(answer->get_header_value("Content-Length"), "3145728");
    EXPECT_EQ(answer->body, "");
}

TEST_F(StationFiles, EmptyFileIsAnEmptyAnswer)
{
    std::ofstream(station_.DataFolder() + "/files/empty.log");
    const auto answer = Get("/files/empty.log");
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(answer->body, "");
}

TEST_F(StationFiles, NoNameLeadsOutOfTheFolder)
{
    for (const char* path :
         {"/files/..", "/files/.", "/files/../station.db", "/files/..%2Fstation.db",
          "/files/%2e%2e%2fstation.db", "/files/..%5Cstation.db", "/files/none.log", "/files/camera-1.log%00",
          "/files/%0acamera-1.log", "/storage/..?kind=file&place=0"})
        EXPECT_EQ(StatusOf(path), 404) << path;
}

TEST_F(StationFiles, StoresHaveWhatTheirKindAndPlaceSay)
{
    for (const char* there : {"camera-1.log?kind=file&place=0", "clip-7.mjpeg?kind=file&place=1",
                              "event-7.jpg?kind=picture&place=0", "event-7.jpg?kind=picture&place=1",
                              "event-7.jpg?kind=platform_picture"})
        EXPECT_EQ(StatusOf(std::string("/storage/") + there), 200) << there;
    for (const char* elsewhere : {"camera-1.log?kind=file&place=1", "clip-7.mjpeg?kind=file&place=0",
                                  "clip-7.mjpeg?kind=file&place=2", "clip-7.mjpeg?kind=file",
                                  "event-7.jpg?kind=picture&place=-1", "event-7.jpg?kind=picture",
                                  "event-999999.jpg?kind=platform_picture", "clip-x.mjpeg?kind=file&place=1"})
        EXPECT_EQ(StatusOf(std::string("/storage/") + elsewhere), 404) << elsewhere;
    EXPECT_EQ(StatusOf("/storage/event-7.jpg"), 400);
    EXPECT_EQ(StatusOf("/storage/event-7.jpg?kind=song"), 400);
}

TEST_F(StationFiles, ClipIsPicturesOneBehindTheOther)
{
    const auto answer = Get("/storage/clip-7.mjpeg?kind=file&place=1");
    EXPECT_EQ(answer->get_header_value("Content-Type"), "video/x-motion-jpeg");
    int frames = 0;
    for (auto at = answer->body.find("\xFF\xD8\xFF"); at != std::string::npos;
         at = answer->body.find("\xFF\xD8\xFF", at + 1))
        ++frames;
    EXPECT_EQ(frames, 5);
    EXPECT_EQ(answer->body.substr(answer->body.size() - 2), "\xFF\xD9");
}

TEST_F(StationFiles, SyntheticFileIsOfAnySizeAndTheSameAtEachPlace)
{
    const auto small = Get("/synthetic/files/100000.bin");
    EXPECT_EQ(small->body.size(), 100000u);
    const auto part = Get("/synthetic/files/1099511627776.bin", {{"Range", "bytes=65000-99999"}});
    EXPECT_TRUE(part->body == small->body.substr(65000));
    EXPECT_NE(small->body.substr(0, 1000), small->body.substr(65536, 1000));
    EXPECT_EQ(Get("/synthetic/files/0.bin")->body, "");
    for (const char* name : {"1099511627777.bin", "-1.bin", "x.bin", "1.txt"})
        EXPECT_EQ(StatusOf(std::string("/synthetic/files/") + name), 404) << name;
}

TEST_F(StationFiles, SlowBodyTakesItsTime)
{
    SetFault({{"Path", "/synthetic/files/"}, {"Kind", "slow"}, {"BytesPerSecond", 50000}});
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(Get("/synthetic/files/5000.bin")->body.size(), 5000u);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(80));
}

TEST_F(StationFiles, LyingRangeIsOffByOne)
{
    SetFault({{"Path", kFirmware}, {"Kind", "range"}, {"Count", 1}});
    EXPECT_EQ(Get(kFirmware, {{"Range", "bytes=5-9"}})->get_header_value("Content-Range"),
              "bytes 6-10/3145728");
    EXPECT_EQ(Get(kFirmware, {{"Range", "bytes=5-9"}})->get_header_value("Content-Range"),
              "bytes 5-9/3145728");
}
