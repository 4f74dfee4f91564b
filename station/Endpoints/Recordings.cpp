#include "station/Endpoints/Endpoints.h"
#include "station/Http/Connection.h"
#include "station/Http/FileAnswer.h"
#include "station/Recording/ClipCutter.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <optional>
#include <string>

namespace Station {
namespace {

using Json = nlohmann::ordered_json;

constexpr char kBadCamera[] = "camera must be the number of a camera.";
constexpr char kBadSpan[] =
    "begin and end must be seconds since 1970 or times such as 2026-01-31T09:05:07Z, end behind begin and by "
    "a day at most.";
constexpr std::int64_t kMostLength = std::int64_t{24} * 3600 * 1000;

std::optional<std::int64_t> CameraOf(const std::string& text)
{
    std::int64_t camera = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), camera);
    if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size() || camera <= 0)
        return std::nullopt;
    return camera;
}

// The camera that the text names; without one the call is answered.
std::optional<std::int64_t> KnownCamera(Call& call, const std::string& text)
{
    const auto camera = CameraOf(text);
    if (!camera) {
        AnswerError(call.response, 400, StationBadCondition, kBadCamera);
        return std::nullopt;
    }
    const Store::Loan database = call.services.store.Borrow();
    if (HasCamera(*database, *camera))
        return camera;
    AnswerError(call.response, 404, StationNoSuchObject, "There is no camera " + text + ".");
    return std::nullopt;
}

std::optional<std::int64_t> TimeOf(const Call& call, const char* name)
{
    return ParseMilliseconds(call.request.get_param_value(name));
}

std::vector<TimeSpan> SpansOf(const std::vector<RecordingPart>& parts)
{
    std::vector<TimeSpan> spans;
    spans.reserve(parts.size());
    for (const RecordingPart& part : parts)
        spans.push_back(part.span);
    return Joined(spans);
}

std::vector<RecordingPart> FindParts(Call& call, std::int64_t camera, const TimeSpan& span)
{
    const Store::Loan database = call.services.store.Borrow();
    return PartsOf(FindRecordings(*database, camera, span), span);
}

void AnswerRecordings(Call& call)
{
    const auto camera = KnownCamera(call, call.request.get_param_value("camera"));
    if (!camera)
        return;
    constexpr TimeSpan kAlways = {INT64_MIN, INT64_MAX};
    Json list = Json::array();
    for (const TimeSpan& span : SpansOf(FindParts(call, *camera, kAlways)))
        list.push_back({{"BeginTime", FormatMilliseconds(span.begin)},
                        {"EndTime", FormatMilliseconds(span.end)},
                        {"Milliseconds", span.end - span.begin}});
    const Json answer = {{"ErrorModule", 0}, {"ErrorCode", 0}, {"Camera", *camera}, {"Recordings", list}};
    call.response.set_content(answer.dump(), kJson);
}

// The cut lives as long as somebody reads it. Its tag is made of what it was made of: the same question gets
// the same bytes.
FileSource SourceOfCut(const std::filesystem::path& file, ClipFormat format,
                       const std::vector<RecordingPart>& parts)
{
    const std::shared_ptr<void> guard(nullptr, [file](void*) {
        std::error_code error;
        std::filesystem::remove(file, error);
    });
    auto source = SourceOfFile(file);
    if (!source)
        throw VideoError("The video that was made can't be read.");
    std::string origin;
    for (const RecordingPart& part : parts)
        origin += part.recording.file + " " + FormatSpans({part.span}) + "\n";
    source->tag = SourceOfBytes(origin, "").tag + "-" + std::to_string(source->size);
    source->type = format == ClipFormat::Avi ? "video/x-msvideo" : "video/mp4";
    // Destroyed from the last to the first: the file is closed before it is removed.
    source->read = [guard, read = std::move(source->read)](std::uint64_t offset, char* data,
                                                           std::size_t size) {
        return read(offset, data, size);
    };
    return *source;
}

void AnswerClip(Call& call)
{
    const std::string word =
        call.request.has_param("format") ? call.request.get_param_value("format") : "mp4";
    const auto begin = TimeOf(call, "begin");
    const auto end = TimeOf(call, "end");
    const bool is_span = begin && end && *begin < *end && *end - *begin <= kMostLength;
    if (!is_span || (word != "mp4" && word != "avi")) {
        AnswerError(call.response, 400, StationBadCondition,
                    is_span ? "format must be mp4 or avi." : kBadSpan);
        return;
    }
    const auto camera = KnownCamera(call, call.name);
    if (!camera)
        return;
    const std::vector<RecordingPart> parts = FindParts(call, *camera, {*begin, *end});
    if (parts.empty()) {
        AnswerError(call.response, 404, StationNoSuchObject, "The camera has no recording of that time.");
        return;
    }
    const ClipFormat format = word == "avi" ? ClipFormat::Avi : ClipFormat::Mp4;
    const std::filesystem::path file = call.services.cuts.NewFile();
    const auto is_gone = [] { return Connection::Current()->IsGone(); };
    if (!CutClip(call.services.store.Folder(), parts, format, file, is_gone)) {
        // Nobody reads this.
        AnswerError(call.response, 503, StationStoreFailed, "The client has gone.");
        return;
    }
    call.response.set_header("Fetchyard-Clip-Spans", FormatSpans(SpansOf(parts)));
    AnswerSource(call, SourceOfCut(file, format, parts));
}

void AnswerFrame(Call& call)
{
    const auto at = TimeOf(call, "at");
    if (!at) {
        AnswerError(call.response, 400, StationBadCondition,
                    "at must be seconds since 1970 or a time such as 2026-01-31T09:05:07Z.");
        return;
    }
    const auto camera = KnownCamera(call, call.name);
    if (!camera)
        return;
    const std::vector<RecordingPart> parts = FindParts(call, *camera, {*at, *at + 1});
    if (parts.empty()) {
        AnswerError(call.response, 404, StationNoSuchObject, "The camera has no recording of that time.");
        return;
    }
    call.response.body = GrabFrame(call.services.store.Folder(), parts.front().recording, *at);
    call.response.set_header("Content-Type", "image/jpeg");
}

}  // namespace

std::vector<Route> RecordingRoutes()
{
    return {{"GET", "/api/v1/recordings", AnswerRecordings},
            {"GET", "/api/v1/recordings/{camera}/clip", AnswerClip},
            {"GET", "/api/v1/recordings/{camera}/frame", AnswerFrame}};
}

}  // namespace Station
