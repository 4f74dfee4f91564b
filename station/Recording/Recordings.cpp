#include "station/Recording/Recordings.h"

#include "station/Clock.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace Station {
namespace {

constexpr char kTable[] = R"(
CREATE TABLE IF NOT EXISTS recordings(
  id INTEGER PRIMARY KEY, camera INTEGER NOT NULL REFERENCES cameras(id), begin INTEGER NOT NULL, length INTEGER NOT NULL,
  file TEXT NOT NULL);
CREATE INDEX IF NOT EXISTS recordings_by_time ON recordings(camera, begin);
)";

// Recordings that follow each other may be apart by what rounding makes of a frame's time.
constexpr std::int64_t kSeam = 1;
// Times beyond the year 9999 are no times of recordings.
constexpr std::int64_t kMostSeconds = 253402300799;

// The digits behind a point as milliseconds; what is finer is cut off.
std::optional<std::int64_t> ReadFraction(std::string_view digits)
{
    std::int64_t value = 0;
    std::int64_t unit = 100;
    if (digits.empty())
        return std::nullopt;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9')
            return std::nullopt;
        value += (digit - '0') * unit;
        unit /= 10;
    }
    return value;
}

std::optional<std::int64_t> ParseSeconds(std::string_view text)
{
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    std::int64_t seconds = 0;
    const auto result = std::from_chars(whole.data(), whole.data() + whole.size(), seconds);
    if (whole.empty() || result.ec != std::errc() || result.ptr != whole.data() + whole.size() ||
        seconds < 0 || seconds > kMostSeconds)
        return std::nullopt;
    if (point == std::string_view::npos)
        return seconds * 1000;
    const auto fraction = ReadFraction(text.substr(point + 1));
    return fraction ? std::optional(seconds * 1000 + *fraction) : std::nullopt;
}

// The fraction of a time text, which the clock passes over.
std::int64_t FractionOf(std::string_view text)
{
    const std::size_t point = text.find_first_of(".,");
    if (point == std::string_view::npos)
        return 0;
    const std::string_view behind = text.substr(point + 1);
    const std::size_t end = std::min(behind.find_first_not_of("0123456789"), behind.size());
    return ReadFraction(behind.substr(0, end)).value_or(0);
}

}  // namespace

std::filesystem::path RecordingFolder(const std::filesystem::path& data)
{
    return data / "recordings";
}

std::filesystem::path CutFolder(const std::filesystem::path& data)
{
    return data / "cuts";
}

void EnsureRecordings(Database& database)
{
    database.Run(kTable);
}

void AddRecording(Database& database, const Recording& recording)
{
    Statement insert =
        database.Prepare("INSERT INTO recordings(camera, begin, length, file) VALUES(?, ?, ?, ?)");
    insert.Add(recording.camera)
        .Add(recording.span.begin)
        .Add(recording.span.end - recording.span.begin)
        .Add(std::string_view(recording.file));
    insert.Run();
}

bool HasCamera(Database& database, std::int64_t camera)
{
    Statement query = database.Prepare("SELECT 1 FROM cameras WHERE id = ?");
    query.Add(camera);
    return query.Step();
}

std::vector<Recording> FindRecordings(Database& database, std::int64_t camera, const TimeSpan& span)
{
    Statement query = database.Prepare(
        "SELECT id, camera, begin, begin + length, file FROM recordings "
        "WHERE camera = ? AND begin < ? AND begin + length > ? ORDER BY begin, id");
    query.Add(camera).Add(span.end).Add(span.begin);
    std::vector<Recording> recordings;
    while (query.Step())
        recordings.push_back(
            {query.Int(0), query.Int(1), {query.Int(2), query.Int(3)}, std::string(query.Text(4))});
    return recordings;
}

std::vector<RecordingPart> PartsOf(const std::vector<Recording>& recordings, const TimeSpan& span)
{
    std::vector<RecordingPart> parts;
    std::int64_t from = span.begin;
    for (const Recording& recording : recordings) {
        const TimeSpan part = {std::max(from, recording.span.begin), std::min(span.end, recording.span.end)};
        if (part.begin >= part.end)
            continue;
        parts.push_back({recording, part});
        from = part.end;
    }
    return parts;
}

std::vector<TimeSpan> Joined(const std::vector<TimeSpan>& spans)
{
    std::vector<TimeSpan> joined;
    for (const TimeSpan& span : spans) {
        if (!joined.empty() && span.begin - joined.back().end <= kSeam)
            joined.back().end = span.end;
        else
            joined.push_back(span);
    }
    return joined;
}

std::optional<std::int64_t> ParseMilliseconds(std::string_view text)
{
    if (const auto seconds = ParseSeconds(text))
        return seconds;
    const auto time = ParseTime(text);
    return time ? std::optional(*time * 1000 + FractionOf(text)) : std::nullopt;
}

std::string FormatMilliseconds(std::int64_t time)
{
    std::int64_t seconds = time / 1000;
    std::int64_t rest = time % 1000;
    if (rest < 0) {
        rest += 1000;
        --seconds;
    }
    std::string text = FormatTime(seconds);
    text[text.find(' ')] = 'T';
    char fraction[16];
    std::snprintf(fraction, sizeof(fraction), ".%03dZ", static_cast<int>(rest));
    return text + fraction;
}

std::string FormatSpans(const std::vector<TimeSpan>& spans)
{
    std::string text;
    for (const TimeSpan& span : spans)
        text +=
            (text.empty() ? "" : ", ") + FormatMilliseconds(span.begin) + "/" + FormatMilliseconds(span.end);
    return text;
}

}  // namespace Station
