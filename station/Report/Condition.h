#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Station {

enum class PictureMode { None, Embedded, Linked };

// The account that a condition wants checked before anything is answered.
struct PasswordCheck
{
    bool is_asked = false;
    std::string user_name;
    std::string ciphered_password;
};

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

    PasswordCheck password_check;
};

inline constexpr std::int64_t kMostRowsOfPage = 10000;
inline constexpr std::size_t kMostChoices = 1000;

// The readers answer false, with the reason in words, if a member is missing or has a wrong value. Members
// that are not known are passed over, since clients put fields of their own into a condition.
bool ReadCondition(const nlohmann::json& json, ReportCondition& condition, std::string& reason);
// The same for a whole report, whose condition needs no page and may name one.
bool ReadWholeCondition(const nlohmann::json& json, ReportCondition& condition, std::string& reason);

// Each reads one member, if it is there; null stands for absent.
bool ReadNumber(const nlohmann::json& json, const char* name, std::int64_t least, std::int64_t most,
                std::int64_t& value, std::string& reason);
bool ReadText(const nlohmann::json& json, const char* name, std::string& value, std::string& reason);
bool ReadPointInTime(const nlohmann::json& json, const char* name, std::optional<std::int64_t>& value,
                     std::string& reason);
// A list of at most kMostChoices whole numbers.
bool ReadNumbers(const nlohmann::json& json, const char* name, std::vector<std::int64_t>& values,
                 std::string& reason);
// False if the condition does not say which page, of which size.
bool HasPage(const nlohmann::json& json, std::string& reason);
bool ReadPasswordCheck(const nlohmann::json& json, PasswordCheck& check, std::string& reason);

}  // namespace Station
