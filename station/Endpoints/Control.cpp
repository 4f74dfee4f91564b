#include "station/Endpoints/Endpoints.h"
#include "station/Report/Condition.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

#include <array>
#include <utility>

namespace Station {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<std::pair<std::string_view, FaultKind>, 7> kKinds = {{{"delay", FaultKind::Delay},
                                                                           {"status", FaultKind::Status},
                                                                           {"cut", FaultKind::Cut},
                                                                           {"garbage", FaultKind::Garbage},
                                                                           {"reset", FaultKind::Reset},
                                                                           {"slow", FaultKind::Slow},
                                                                           {"range", FaultKind::Range}}};

bool ReadKind(const nlohmann::json& json, FaultKind& kind, std::string& reason)
{
    const auto member = json.find("Kind");
    if (member != json.end() && member->is_string())
        for (const auto& [name, value] : kKinds)
            if (*member == std::string(name)) {
                kind = value;
                return true;
            }
    reason = "Kind must be delay, status, cut, garbage, reset, slow or range.";
    return false;
}

bool ReadFault(const nlohmann::json& json, Fault& fault, std::string& reason)
{
    constexpr std::int64_t kMost = 1000000000;
    if (!json.is_object()) {
        reason = "A fault must be an object.";
        return false;
    }
    std::int64_t status = fault.status;
    std::int64_t cut_at = 0;
    const auto path = json.find("Path");
    if (path != json.end() && !path->is_string()) {
        reason = "Path must be a text.";
        return false;
    }
    if (path != json.end())
        fault.path = path->get<std::string>();
    const bool is_good = ReadKind(json, fault.kind, reason) &&
                         ReadNumber(json, "DelayMs", 0, kMost, fault.delay_ms, reason) &&
                         ReadNumber(json, "Status", 200, 599, status, reason) &&
                         ReadNumber(json, "CutAt", 0, kMost, cut_at, reason) &&
                         ReadNumber(json, "BytesPerSecond", 0, kMost, fault.bytes_per_second, reason) &&
                         ReadNumber(json, "After", 0, kMost, fault.after, reason) &&
                         ReadNumber(json, "Count", -1, kMost, fault.count, reason);
    fault.status = static_cast<int>(status);
    fault.cut_at = static_cast<std::uint64_t>(cut_at);
    return is_good;
}

void AddFault(Call& call)
{
    nlohmann::json json;
    if (!ReadBody(call, json))
        return;
    Fault fault;
    std::string reason;
    if (!ReadFault(json, fault, reason)) {
        AnswerError(call.response, 400, StationBadCondition, reason);
        return;
    }
    call.services.faults.Add(fault);
    AnswerDone(call);
}

void ClearFaults(Call& call)
{
    call.services.faults.Clear();
    AnswerDone(call);
}

void AnswerCounts(Call& call)
{
    const RequestCounts::Snapshot counts = call.services.counts.Take();
    Json paths = Json::object();
    for (const auto& [path, entry] : counts.by_path)
        paths[path] = {{"Count", entry.count}, {"Bytes", entry.bytes}};
    AnswerJson(call, {{"ErrorModule", 0},
                      {"ErrorCode", 0},
                      {"Connections", counts.connections},
                      {"MostAtOnce", counts.most_at_once},
                      {"Paths", paths}});
}

void ResetCounts(Call& call)
{
    call.services.counts.Reset();
    AnswerDone(call);
}

}  // namespace

std::vector<Route> ControlRoutes()
{
    return {{"POST", "/control/faults", AddFault, true, true},
            {"DELETE", "/control/faults", ClearFaults, true, true},
            {"GET", "/control/requests", AnswerCounts, true, true},
            {"DELETE", "/control/requests", ResetCounts, true, true}};
}

}  // namespace Station
