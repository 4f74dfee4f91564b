#pragma once

#include "station/Data/Store.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What cameras have recorded: mp4 files of H.264 in the data folder, and which time each is of. All times are
// milliseconds since 1970, UTC; a span has its begin and lacks its end.
namespace Station {

struct TimeSpan
{
    std::int64_t begin = 0;
    std::int64_t end = 0;
};

struct Recording
{
    std::int64_t id = 0;
    std::int64_t camera = 0;
    TimeSpan span;
    std::string file;  // a name in RecordingFolder; cameras may share one
};

// The part of a recording that a request asks for.
struct RecordingPart
{
    Recording recording;
    TimeSpan span;
};

std::filesystem::path RecordingFolder(const std::filesystem::path& data);
// Where cuts are made; what lies there is of use only while they are served.
std::filesystem::path CutFolder(const std::filesystem::path& data);

// Makes the table if the data are of before there were recordings. Throws StoreError, as all of these do.
void EnsureRecordings(Database& database);
void AddRecording(Database& database, const Recording& recording);
bool HasCamera(Database& database, std::int64_t camera);
// Of one camera, by time: those that reach into the span.
std::vector<Recording> FindRecordings(Database& database, std::int64_t camera, const TimeSpan& span);

// What there is of the span, by time. Where recordings overlap, the earlier one counts.
std::vector<RecordingPart> PartsOf(const std::vector<Recording>& recordings, const TimeSpan& span);
// The spans without the seams between recordings that follow each other.
std::vector<TimeSpan> Joined(const std::vector<TimeSpan>& spans);

// Seconds since 1970 ("1769900000", "1769900000.04") or a time text ("2026-01-31T09:05:07.040Z").
std::optional<std::int64_t> ParseMilliseconds(std::string_view text);
// "2026-01-31T09:05:07.040Z"
std::string FormatMilliseconds(std::int64_t time);
// "2026-01-31T09:05:07.000Z/2026-01-31T09:05:17.000Z", more of them behind ", ".
std::string FormatSpans(const std::vector<TimeSpan>& spans);

}  // namespace Station
