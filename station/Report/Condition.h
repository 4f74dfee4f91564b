#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Station {

enum class PictureMode { None, Embedded, Linked };

// What a client asks a report for.
struct ReportCondition
{
    std::int64_t page_index = 1;  // from 1
    std::int64_t page_size = 100;
    std::optional<std::int64_t> begin;  // events from here on
    std::optional<std::int64_t> end;    // events before here
    std::vector<std::int64_t> camera_ids;
    std::vector<std::string> event_types;
    std::int64_t min_level = 1;
    std::string text;  // part of the event's text, person or plate
    PictureMode pictures = PictureMode::None;
    std::optional<std::int64_t> limit;  // most rows of the whole report

    bool has_password_check = false;
    std::string user_name;
    std::string ciphered_password;
};

inline constexpr std::int64_t kMostRowsOfPage = 10000;

// False, with the reason in words, if a member is missing or has a wrong value. Members that are not known
// are passed over, since clients put fields of their own into a condition.
bool ReadCondition(const nlohmann::json& json, ReportCondition& condition, std::string& reason);

// Reads a whole number within bounds, if the member is there.
bool ReadNumber(const nlohmann::json& json, const char* name, std::int64_t least, std::int64_t most,
                std::int64_t& value, std::string& reason);

}  // namespace Station
