#include "station/Endpoints/Endpoints.h"
#include "station/Http/FileAnswer.h"
#include "station/Services.h"

#include <charconv>

namespace Station {
namespace {

constexpr std::int64_t kMostSyntheticBytes = std::int64_t{1} << 40;
constexpr int kClipFrames = 5;  // a second apart

enum Place : std::int64_t {
    kLocalStorage = 0,
    kObjectStorage = 1,
};

void AnswerNotThere(Call& call)
{
    AnswerError(call.response, 404, StationNoSuchObject, "There is no object " + call.name + ".");
}

// The number between two texts; nothing if the name is not of that form.
std::optional<std::int64_t> NumberInName(std::string_view name, std::string_view begin, std::string_view end)
{
    if (name.size() <= begin.size() + end.size() || name.substr(0, begin.size()) != begin ||
        name.substr(name.size() - end.size()) != end)
        return std::nullopt;
    name = name.substr(begin.size(), name.size() - begin.size() - end.size());
    std::int64_t number = 0;
    const auto result = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool is_number = result.ec == std::errc() && result.ptr == name.data() + name.size();
    return is_number && number >= 0 ? std::optional(number) : std::nullopt;
}

void AnswerOptional(Call& call, const std::optional<FileSource>& source)
{
    if (source)
        AnswerSource(call, *source);
    else
        AnswerNotThere(call);
}

std::optional<FileSource> StoredFile(Call& call)
{
    if (!IsFileName(call.name))
        return std::nullopt;
    return SourceOfFile(FileFolder(call.services.store.Folder()) / std::filesystem::u8path(call.name));
}

std::optional<Event> EventOf(Call& call, std::string_view begin, std::string_view end)
{
    const auto id = NumberInName(call.name, begin, end);
    return id ? call.services.store.FindEvent(*id) : std::nullopt;
}

void AnswerStoredPicture(Call& call)
{
    const auto event = EventOf(call, "event-", ".jpg");
    std::string bytes;
    std::string reason;
    if (!event)
        AnswerNotThere(call);
    else if (call.services.pictures.Get(*event, bytes, reason))
        AnswerSource(call, SourceOfBytes(std::move(bytes), "image/jpeg"));
    else
        AnswerError(call.response, 500, StationStoreFailed, reason);
}

// A clip is motion JPEG: one picture behind the other, which every player shows.
std::optional<FileSource> Clip(Call& call)
{
    auto event = EventOf(call, "clip-", ".mjpeg");
    if (!event)
        return std::nullopt;
    std::string frames;
    for (int i = 0; i < kClipFrames; ++i) {
        frames += call.services.pictures.Draw(*event);
        ++event->time;
    }
    return SourceOfBytes(std::move(frames), "video/x-motion-jpeg");
}

// "?kind=file&place=1": logs lie in the local storage, clips in the object storage, pictures in both and in
// the platform's own store, which has no place.
void AnswerStoredObject(Call& call)
{
    const std::string kind = call.request.get_param_value("kind");
    const auto place = NumberInName("=" + call.request.get_param_value("place"), "=", "");
    const bool is_placed = place && (*place == kLocalStorage || *place == kObjectStorage);
    if (kind == "platform_picture" || (kind == "picture" && is_placed))
        AnswerStoredPicture(call);
    else if (kind == "file" && is_placed)
        AnswerOptional(call, place == kObjectStorage ? Clip(call) : StoredFile(call));
    else if (kind == "file" || kind == "picture")
        AnswerNotThere(call);
    else
        AnswerError(call.response, 400, StationBadCondition,
                    "kind must be file, picture or platform_picture.");
}

void AnswerFile(Call& call)
{
    AnswerOptional(call, StoredFile(call));
}

// "<bytes>.bin"
void AnswerSyntheticFile(Call& call)
{
    const auto size = NumberInName(call.name, "", ".bin");
    if (size && *size <= kMostSyntheticBytes)
        AnswerSource(call, SyntheticSource(static_cast<std::uint64_t>(*size)));
    else
        AnswerNotThere(call);
}

}  // namespace

std::vector<Route> FileRoutes()
{
    return {{"GET", "/files/{name}", AnswerFile},
            {"GET", "/storage/{name}", AnswerStoredObject},
            {"GET", "/synthetic/files/{name}", AnswerSyntheticFile}};
}

}  // namespace Station
