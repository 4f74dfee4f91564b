#pragma once

#include "station/Making/Workshop.h"
#include "station/Report/Condition.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Station {

struct Services;

// What a client asks the station to gather the logs of.
struct GatherRequest
{
    std::vector<std::int64_t> camera_ids;  // empty for all
    std::optional<std::int64_t> begin;     // events from here on
    std::optional<std::int64_t> end;       // events before here
    PasswordCheck password_check;
    std::string guid;  // of a gathering that is asked after; empty for a new one
    WorkOrder order;   // how long the client is kept waiting; nothing else of it
};

// False, with the reason in words, for a member with a wrong value.
bool ReadGatherRequest(const nlohmann::json& json, GatherRequest& request, std::string& reason);

// The order to make a folder with "camera-<number>.log" for each of the cameras that the site has, and
// "station.log". Nothing if it has none of them. The services must outlive the workshop.
std::optional<WorkOrder> OrderOf(const GatherRequest& request, Services& services);

}  // namespace Station
