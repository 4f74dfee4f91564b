#include "station/Evidence/Evidence.h"
#include "station/Report/Condition.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace Station {
namespace {

using Json = nlohmann::json;
constexpr std::size_t kLongestName = 500;      // bytes
constexpr std::size_t kLongestRemark = 20000;  // bytes
constexpr std::size_t kMostFiles = 10000;
constexpr std::int64_t kMostBytes = std::int64_t{1} << 48;
constexpr std::size_t kHashDigits = 64;

bool ReadShortText(const Json& json, const char* name, std::size_t longest, std::string& value,
                   std::string& reason)
{
    if (!ReadText(json, name, value, reason))
        return false;
    if (value.size() > longest)
        reason = std::string(name) + " is longer than " + std::to_string(longest) + " bytes.";
    return value.size() <= longest;
}

bool ReadNeededText(const Json& json, const char* name, std::string& value, std::string& reason)
{
    if (!ReadShortText(json, name, kLongestName, value, reason))
        return false;
    const bool is_there = value.find_first_not_of(" \t\r\n") != std::string::npos;
    if (!is_there)
        reason = std::string(name) + " is missing.";
    return is_there;
}

bool ReadHash(const Json& json, std::string& hash, std::string& reason)
{
    if (!ReadText(json, "Sha256", hash, reason))
        return false;
    for (char& digit : hash)
        if (digit >= 'A' && digit <= 'F')
            digit = static_cast<char>(digit - 'A' + 'a');
    const bool is_hash =
        hash.size() == kHashDigits && hash.find_first_not_of("0123456789abcdef") == std::string::npos;
    if (!is_hash)
        reason = "Sha256 must be 64 hex digits.";
    return is_hash;
}

bool ReadFile(const Json& json, EvidenceFile& file, std::string& reason)
{
    if (!json.is_object()) {
        reason = "A file must be an object.";
        return false;
    }
    file.bytes = -1;
    if (!ReadNeededText(json, "Name", file.name, reason) ||
        !ReadNumber(json, "Bytes", 0, kMostBytes, file.bytes, reason) || !ReadHash(json, file.sha256, reason))
        return false;
    if (file.bytes < 0)
        reason = "Bytes is missing.";
    return file.bytes >= 0;
}

bool ReadFiles(const Json& json, std::vector<EvidenceFile>& files, std::string& reason)
{
    const auto member = json.find("Files");
    if (member == json.end() || member->is_null())
        return true;
    if (!member->is_array() || member->size() > kMostFiles) {
        reason = "Files must be a list of at most " + std::to_string(kMostFiles) + " files.";
        return false;
    }
    for (const Json& item : *member) {
        files.emplace_back();
        if (!ReadFile(item, files.back(), reason)) {
            reason.insert(0, "File " + std::to_string(files.size()) + ": ");
            return false;
        }
    }
    return true;
}

}  // namespace

bool ReadEvidence(const Json& json, Evidence& evidence, std::string& reason)
{
    if (!json.is_object()) {
        reason = "The evidence must be an object.";
        return false;
    }
    return ReadNeededText(json, "CaseNumber", evidence.case_number, reason) &&
           ReadNeededText(json, "Title", evidence.title, reason) &&
           ReadShortText(json, "Remark", kLongestRemark, evidence.remark, reason) &&
           ReadShortText(json, "Client", kLongestName, evidence.client, reason) &&
           ReadFiles(json, evidence.files, reason);
}

}  // namespace Station
