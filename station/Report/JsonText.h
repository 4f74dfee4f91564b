#pragma once

#include <string>
#include <string_view>

namespace Station {

// Appends text as a JSON string with its quotes. Bytes that are no UTF-8 become U+FFFD.
void AppendJson(std::string& out, std::string_view text);

// The same text with bytes that are no UTF-8 replaced by U+FFFD.
std::string ToValidUtf8(std::string_view text);

}  // namespace Station
