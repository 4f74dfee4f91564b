#pragma once

#include <nlohmann/json.hpp>

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
// Checks a request against its schema and the page condition inside it; empty if all is well.
std::vector<Violation> CheckRequest(const nlohmann::json& request);

}  // namespace FetchyardClient
