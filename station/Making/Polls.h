#pragma once

#include "station/Making/Workshop.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace Station {

// Reads ReadyAfterPolls and FailAfterPolls of a condition, which say how a client is to be kept waiting, into
// an order. False, with the reason in words, for a wrong value.
bool ReadPolls(const nlohmann::json& json, WorkOrder& order, std::string& reason);

// "working", "ready", "failed" or "stopped".
const char* NameOf(WorkState state);

}  // namespace Station
