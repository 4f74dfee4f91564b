#include "station/Making/Polls.h"

#include "station/Report/Condition.h"

#include <nlohmann/json.hpp>

namespace Station {
namespace {

constexpr std::int64_t kMostPolls = 1000000;

}  // namespace

bool ReadPolls(const nlohmann::json& json, WorkOrder& order, std::string& reason)
{
    std::int64_t fail = -1;
    order.ready_after_polls = 1;
    if (!ReadNumber(json, "ReadyAfterPolls", 0, kMostPolls, order.ready_after_polls, reason) ||
        !ReadNumber(json, "FailAfterPolls", 0, kMostPolls, fail, reason))
        return false;
    if (fail >= 0)
        order.fail_after_polls = fail;
    return true;
}

const char* NameOf(WorkState state)
{
    switch (state) {
        case WorkState::Working:
            return "working";
        case WorkState::Ready:
            return "ready";
        case WorkState::Failed:
            return "failed";
        case WorkState::Stopped:
            break;
    }
    return "stopped";
}

}  // namespace Station
