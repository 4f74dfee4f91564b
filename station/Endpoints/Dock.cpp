#include "station/Clock.h"
#include "station/Dock/DockFiles.h"
#include "station/Endpoints/Endpoints.h"
#include "station/Http/FileAnswer.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <system_error>

namespace Station {
namespace {

using Json = nlohmann::ordered_json;

// Digits and nothing else.
std::optional<std::int64_t> ReadNumberStep(const std::string& text)
{
    std::int64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool is_good = result.ec == std::errc() && result.ptr == text.data() + text.size() && number >= 0;
    return is_good && text.front() != '-' ? std::optional(number) : std::nullopt;
}

void AnswerDockFile(Call& call)
{
    const auto device = ReadNumberStep(call.name);
    const auto id = ReadNumberStep(call.second_name);
    const auto file = device && id ? FindDockFile(*call.services.store.Borrow(), *device, *id) : std::nullopt;
    auto source = file ? SourceOfFile(PathOf(call.services.store.Folder(), *file)) : std::nullopt;
    if (!source) {
        AnswerError(call.response, 404, StationNoSuchObject, "The docking device has no such file.");
        return;
    }
    source->type = ContentTypeOf(*file);
    AnswerSource(call, *source);
}

void ListDockFiles(Call& call)
{
    Json list = Json::array();
    for (const DockFile& file : AllDockFiles(*call.services.store.Borrow())) {
        std::error_code error;
        const auto bytes = std::filesystem::file_size(PathOf(call.services.store.Folder(), file), error);
        if (!error)
            list.push_back({{"Device", file.device},
                            {"Id", file.id},
                            {"Name", file.name},
                            {"Bytes", bytes},
                            {"Time", FormatIsoTime(file.time)}});
    }
    AnswerJson(call, {{"ErrorModule", 0}, {"ErrorCode", 0}, {"Files", list}});
}

}  // namespace

std::vector<Route> DockRoutes()
{
    return {{"GET", "/api/v1/dock/files", ListDockFiles},
            {"GET", "/dock/{device}/files/{id}", AnswerDockFile}};
}

}  // namespace Station
