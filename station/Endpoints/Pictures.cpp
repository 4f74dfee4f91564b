#include "station/Endpoints/Endpoints.h"
#include "station/Services.h"

#include <charconv>
#include <optional>
#include <string_view>

namespace Station {
namespace {

// A positive whole number and nothing else.
std::optional<std::int64_t> ReadId(std::string_view text)
{
    std::int64_t id = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), id);
    if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size() || id <= 0)
        return std::nullopt;
    return id;
}

// "event-17.jpg" or "event-17.png": no other name reaches the file system.
std::optional<std::int64_t> EventOfName(std::string_view name, bool& is_png)
{
    constexpr std::string_view kBegin = "event-";
    constexpr std::size_t kEnd = 4;
    if (name.size() <= kBegin.size() + kEnd || name.substr(0, kBegin.size()) != kBegin)
        return std::nullopt;
    const std::string_view suffix = name.substr(name.size() - kEnd);
    is_png = suffix == ".png";
    if (!is_png && suffix != ".jpg")
        return std::nullopt;
    return ReadId(name.substr(kBegin.size(), name.size() - kBegin.size() - kEnd));
}

void AnswerPictureOf(Call& call, const Event& event)
{
    std::string bytes;
    std::string reason;
    if (!call.services.pictures.Get(event, bytes, reason)) {
        AnswerError(call.response, 500, StationStoreFailed, reason);
        return;
    }
    const bool is_png =
        event.picture.size() > 4 && event.picture.compare(event.picture.size() - 4, 4, ".png") == 0;
    call.response.body = std::move(bytes);
    call.response.set_header("Content-Type", is_png ? "image/png" : "image/jpeg");
}

void AnswerPicture(Call& call)
{
    bool is_png = false;
    const auto id = EventOfName(call.name, is_png);
    const auto event = id ? call.services.store.FindEvent(*id) : std::nullopt;
    const std::string known = !event                   ? ""
                              : event->picture.empty() ? "event-" + std::to_string(event->id) + ".jpg"
                                                       : event->picture;
    if (known.empty() || known != call.name) {
        AnswerError(call.response, 404, StationNoSuchObject, "There is no picture " + call.name + ".");
        return;
    }
    AnswerPictureOf(call, *event);
}

// The address that a camera's own picture service has: ?QUERN&camera=3&event=17
void AnswerDevicePicture(Call& call)
{
    const auto camera = ReadId(call.request.get_param_value("camera"));
    const auto id = ReadId(call.request.get_param_value("event"));
    if (!call.request.has_param("QUERN") || !camera || !id) {
        AnswerError(call.response, 400, StationBadCondition,
                    "The query must be QUERN&camera=<n>&event=<id>.");
        return;
    }
    const auto event = call.services.store.FindEvent(*id);
    if (!event || event->camera_id != *camera) {
        AnswerError(call.response, 404, StationNoSuchObject, "The camera has no picture of that event.");
        return;
    }
    AnswerPictureOf(call, *event);
}

}  // namespace

std::vector<Route> PictureRoutes()
{
    return {{"GET", "/pictures/{name}", AnswerPicture}, {"GET", "/device/picture", AnswerDevicePicture}};
}

}  // namespace Station
