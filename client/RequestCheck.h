#pragma once

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>
#include <vector>

namespace FetchyardClient {

// One thing that the library would skip or misread.
struct Violation
{
    std::string path;  // JSON pointer into the request, empty for the whole
    std::string words;
};

// Parses a request's text; on bad JSON the one violation tells line and column.
bool ParseRequest(const std::string& text, nlohmann::json& request, std::vector<Violation>& violations);
// Whether an export is one of person pictures, as against a report.
bool IsPersonRequest(const nlohmann::json& request);
// JSON pointer to the part of an export's request that goes to the server.
const char* ServerRequestOf(const nlohmann::json& request);
// Checks a request against the schema of its kind and its page condition; empty if all is well.
std::vector<Violation> CheckRequest(const nlohmann::json& request);
// Prints violations to the stream, a line each, with what the request is called in front.
void PrintViolations(std::FILE* stream, const std::string& label, const std::vector<Violation>& violations);

}  // namespace FetchyardClient
