#pragma once

#include "JsonNode.h"

#include <memory>
#include <string>

namespace ZellNetLink {

// The tree of a JSON text, null if it is none. See CRapidJsonProto::set_str for what is refused.
std::unique_ptr<JsonNode> ParseJson(const std::string& text);
// Compact, members in their order, numbers as they came.
std::string WriteJson(const JsonNode& node);

}  // namespace ZellNetLink
