#include "RecordingsFixture.h"
#include "station/Recording/ClipCutter.h"
#include "station/Recording/ParameterSets.h"

extern "C" {
#include <libavutil/log.h>
}

using namespace SystemTest;
using Station::RecordingPart;
using Station::TimeSpan;

namespace {

RecordingPart Part(std::int64_t begin, std::int64_t end)
{
    RecordingPart part;
    part.recording.span = {kMinute * 1000, kMidnight * 1000};
    part.recording.file = "street-20260131-235900.mp4";
    part.span = {begin * 1000, end * 1000};
    return part;
}

Station::Recording Recorded(std::int64_t begin, std::int64_t end)
{
    return {0, 1, {begin, end}, "a"};
}

std::vector<std::pair<std::int64_t, std::int64_t>> SpansOf(const std::vector<RecordingPart>& parts)
{
    std::vector<std::pair<std::int64_t, std::int64_t>> spans;
    for (const RecordingPart& part : parts)
        spans.emplace_back(part.span.begin, part.span.end);
    return spans;
}

using Spans = std::vector<std::pair<std::int64_t, std::int64_t>>;

// The cutter without a station around it, in this process.
class ClipCutter : public RecordingsFixture
{
protected:
    ClipCutter() { av_log_set_level(AV_LOG_QUIET); }
};

}  // namespace

TEST_F(ClipCutter, WorkThatIsOverLeavesNoFile)
{
    const std::filesystem::path file = folder_.File("cut");
    for (int limit = 0; limit < 400; limit += 57) {
        int asked = 0;
        const bool is_done =
            Station::CutClip(station_.DataFolder(), {Part(kMinute + 3, kMidnight)}, Station::ClipFormat::Mp4,
                             file, [&] { return asked++ >= limit; });
        EXPECT_FALSE(is_done) << limit;
        EXPECT_EQ(asked, limit + 1);
        EXPECT_FALSE(std::filesystem::exists(file)) << limit;
    }
}

TEST_F(ClipCutter, NothingToCutIsTold)
{
    EXPECT_THROW(
        Station::CutClip(station_.DataFolder(), {}, Station::ClipFormat::Mp4, folder_.File("cut"), {}),
        Station::VideoError);
    EXPECT_FALSE(std::filesystem::exists(folder_.File("cut")));
}

TEST_F(ClipCutter, PlaceThatCantBeWrittenIsTold)
{
    try {
        Station::CutClip(station_.DataFolder(), {Part(kMinute, kMidnight)}, Station::ClipFormat::Mp4,
                         folder_.File("none/cut"), {});
        FAIL() << "a cut in no folder";
    } catch (const Station::VideoError& error) {
        EXPECT_NE(std::string(error.what()).find("none/cut can't be written: No such file"),
                  std::string::npos)
            << error.what();
    }
}

TEST(RecordingSpans, OverlapsCountOnceAndEdgesTouchNothing)
{
    const std::vector<Station::Recording> all = {Recorded(0, 100), Recorded(100, 200), Recorded(150, 300),
                                                 Recorded(400, 500)};
    EXPECT_EQ(SpansOf(Station::PartsOf(all, {50, 450})),
              (Spans{{50, 100}, {100, 200}, {200, 300}, {400, 450}}));
    EXPECT_EQ(SpansOf(Station::PartsOf(all, {300, 400})), Spans{});
    EXPECT_EQ(SpansOf(Station::PartsOf(all, {100, 101})), (Spans{{100, 101}}));
    const std::vector<TimeSpan> joined = Station::Joined({{0, 100}, {101, 200}, {202, 300}});
    ASSERT_EQ(joined.size(), 2u);
    EXPECT_EQ(joined[0].end, 200);
}

TEST(RecordingSpans, TimesAreReadInTwoForms)
{
    EXPECT_EQ(Station::ParseMilliseconds("1769903940"), 1769903940000);
    EXPECT_EQ(Station::ParseMilliseconds("1769903940.04"), 1769903940040);
    EXPECT_EQ(Station::ParseMilliseconds("1769903940.0409"), 1769903940040);
    EXPECT_EQ(Station::ParseMilliseconds("2026-01-31T23:59:00.5Z"), 1769903940500);
    EXPECT_EQ(Station::ParseMilliseconds("2026-02-01T00:59:00+01:00"), 1769903940000);
    for (const char* const wrong : {"", ".", "1.", ".5", "-1", "1.5x", "now", "2026-13-01T00:00:00Z"})
        EXPECT_FALSE(Station::ParseMilliseconds(wrong)) << wrong;
    EXPECT_EQ(Station::FormatMilliseconds(1769903940040), "2026-01-31T23:59:00.040Z");
    EXPECT_EQ(Station::FormatMilliseconds(-1), "1969-12-31T23:59:59.999Z");
}

TEST(H264ParameterSets, BoxesThatAreNoneAreRefused)
{
    Station::ParameterSets sets;
    const std::string good("\x01\x42\xC0\x1E\xFF\xE1\x00\x04\x67\x42\xC0\x1E\x01\x00\x02\x68\xCE", 17);
    EXPECT_TRUE(Station::ReadBox(good, sets));
    EXPECT_EQ(Station::WriteBox(sets), good);
    for (std::size_t size = 0; size < good.size(); ++size)
        EXPECT_FALSE(Station::ReadBox(std::string_view(good).substr(0, size), sets)) << size;
    std::string other = good;
    other[4] = '\xFD';  // lengths of two bytes
    EXPECT_FALSE(Station::ReadBox(other, sets));
}

TEST(H264ParameterSets, StartCodesBecomeLengths)
{
    const std::string packet("\0\0\0\1\x67\x42\0\0\1\x68\xCE\0\0\1\x65\x88\x80\0\0\0\1\x41\x9A", 23);
    EXPECT_EQ(Station::WithLengths(packet), std::string("\0\0\0\3\x65\x88\x80\0\0\0\2\x41\x9A", 13));
    EXPECT_TRUE(Station::StartsAnew(Station::WithLengths(packet)));
    EXPECT_FALSE(Station::StartsAnew(std::string("\0\0\0\2\x41\x9A", 6)));
    EXPECT_FALSE(Station::StartsAnew(std::string("\0\0\0\x09\x65\x9A", 6)));
    EXPECT_FALSE(Station::StartsAnew(""));
}
