#pragma once

#include <string>
#include <string_view>

namespace Station {

// The text for the inside of an element or of a quoted attribute; bytes that are no UTF-8 become U+FFFD.
std::string ToHtml(std::string_view text);

}  // namespace Station
