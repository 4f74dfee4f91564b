#include "station/Report/Condition.h"

#include "station/Clock.h"

#include <nlohmann/json.hpp>

#include <limits>

namespace Station {
namespace {

using Json = nlohmann::json;
constexpr std::int64_t kMostPages = std::numeric_limits<std::int32_t>::max();

template <typename T>
bool ReadList(const Json& json, const char* name, bool (Json::*is_right)() const noexcept,
              std::vector<T>& values, std::string& reason)
{
    const auto member = json.find(name);
    if (member == json.end() || member->is_null())
        return true;
    bool is_good = member->is_array() && member->size() <= kMostChoices;
    if (is_good)
        for (const Json& item : *member)
            is_good = is_good && (item.*is_right)();
    if (!is_good) {
        reason = std::string(name) + " must be a list of at most " + std::to_string(kMostChoices) +
                 (std::is_same_v<T, std::string> ? " texts." : " whole numbers.");
        return false;
    }
    for (const Json& item : *member)
        values.push_back(item.get<T>());
    return true;
}

bool ReadPictures(const Json& json, PictureMode& mode, std::string& reason)
{
    std::string text = "none";
    if (!ReadText(json, "Pictures", text, reason))
        return false;
    if (text == "none")
        mode = PictureMode::None;
    else if (text == "embedded")
        mode = PictureMode::Embedded;
    else if (text == "linked")
        mode = PictureMode::Linked;
    else {
        reason = "Pictures must be none, embedded or linked.";
        return false;
    }
    return true;
}

}  // namespace

bool HasPage(const Json& json, std::string& reason)
{
    for (const char* name : {"PageIndex", "PageSize"}) {
        if (json.contains(name))
            continue;
        reason = std::string(name) + " is missing.";
        return false;
    }
    return true;
}

bool ReadNumber(const Json& json, const char* name, std::int64_t least, std::int64_t most,
                std::int64_t& value, std::string& reason)
{
    const auto member = json.find(name);
    if (member == json.end() || member->is_null())
        return true;
    const bool is_small_enough =
        !member->is_number_unsigned() || member->get<std::uint64_t>() <= static_cast<std::uint64_t>(most);
    if (!member->is_number_integer() || !is_small_enough || member->get<std::int64_t>() < least ||
        member->get<std::int64_t>() > most) {
        reason = std::string(name) + " must be a whole number from " + std::to_string(least) + " to " +
                 std::to_string(most) + ".";
        return false;
    }
    value = member->get<std::int64_t>();
    return true;
}

bool ReadText(const Json& json, const char* name, std::string& value, std::string& reason)
{
    const auto member = json.find(name);
    if (member == json.end() || member->is_null())
        return true;
    if (!member->is_string()) {
        reason = std::string(name) + " must be a text.";
        return false;
    }
    value = member->get<std::string>();
    return true;
}

bool ReadPointInTime(const Json& json, const char* name, std::optional<std::int64_t>& value,
                     std::string& reason)
{
    std::string text;
    if (!ReadText(json, name, text, reason))
        return false;
    if (text.empty())
        return true;
    value = ParseTime(text);
    if (!value)
        reason = std::string(name) + " must be a time such as 2026-01-31T09:05:07Z.";
    return value.has_value();
}

bool ReadNumbers(const Json& json, const char* name, std::vector<std::int64_t>& values, std::string& reason)
{
    return ReadList(json, name, &Json::is_number_integer, values, reason);
}

bool ReadPasswordCheck(const Json& json, PasswordCheck& check, std::string& reason)
{
    const auto member = json.find("CheckPasswordRequest");
    if (member == json.end() || member->is_null())
        return true;
    if (!member->is_object()) {
        reason = "CheckPasswordRequest must be an object.";
        return false;
    }
    check.is_asked = true;
    return ReadText(*member, "UserName", check.user_name, reason) &&
           ReadText(*member, "PassWord", check.ciphered_password, reason);
}

bool ReadWholeCondition(const Json& json, ReportCondition& condition, std::string& reason)
{
    if (!json.is_object()) {
        reason = "The condition must be an object.";
        return false;
    }
    std::int64_t limit = -1;
    const bool is_good =
        ReadPointInTime(json, "BeginTime", condition.begin, reason) &&
        ReadPointInTime(json, "EndTime", condition.end, reason) &&
        ReadNumbers(json, "CameraIds", condition.camera_ids, reason) &&
        ReadList(json, "EventTypes", &Json::is_string, condition.event_types, reason) &&
        ReadNumber(json, "MinLevel", 1, 5, condition.min_level, reason) &&
        ReadText(json, "Text", condition.text, reason) && ReadPictures(json, condition.pictures, reason) &&
        ReadNumber(json, "Limit", 0, std::numeric_limits<std::int32_t>::max(), limit, reason) &&
        ReadPasswordCheck(json, condition.password_check, reason);
    if (limit >= 0)
        condition.limit = limit;
    return is_good;
}

bool ReadCondition(const Json& json, ReportCondition& condition, std::string& reason)
{
    return ReadWholeCondition(json, condition, reason) && HasPage(json, reason) &&
           ReadNumber(json, "PageIndex", 1, kMostPages, condition.page_index, reason) &&
           ReadNumber(json, "PageSize", 1, kMostRowsOfPage, condition.page_size, reason);
}

}  // namespace Station
