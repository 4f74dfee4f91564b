#pragma once

#include "station/Data/Database.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// Exports that somebody registered as evidence of a case.
namespace Station {

struct EvidenceFile
{
    std::string name;
    std::int64_t bytes = 0;
    std::string sha256;  // 64 small hex digits
};

struct Evidence
{
    std::string guid;
    std::int64_t registered = 0;  // seconds since 1970, UTC
    std::string case_number;
    std::string title;
    std::string remark;
    std::string client;
    // In a list only their number and size are known.
    std::vector<EvidenceFile> files;
    std::int64_t file_count = 0;
    std::int64_t bytes = 0;
};

// The most that a list has; older ones are found by their case or their guid.
inline constexpr std::int64_t kMostListed = 1000;

// False, with the reason in words, if a member is missing or has a wrong value.
bool ReadEvidence(const nlohmann::json& json, Evidence& evidence, std::string& reason);

// Makes the tables if they are not there. Throws StoreError, as do the others.
void EnsureEvidence(Database& database);
// Gives it a guid and the present time, and stores all of it or nothing.
void RegisterEvidence(Database& database, Evidence& evidence);
// The newest first; of one case if it is not empty.
std::vector<Evidence> ListEvidence(Database& database, const std::string& case_number);
std::optional<Evidence> FindEvidence(Database& database, const std::string& guid);

}  // namespace Station
