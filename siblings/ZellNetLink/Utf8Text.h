#pragma once

#include <string>
#include <string_view>

namespace ZellNetLink {

// The length of the valid UTF-8 letter at the head of the text (1 to 4), 0 if there is none.
std::size_t Utf8LetterLength(std::string_view text);
// The text with every byte that is no UTF-8 replaced by U+FFFD.
std::string Utf8Repaired(std::string_view text);

inline constexpr std::string_view kReplacementLetter = "\xEF\xBF\xBD";

}  // namespace ZellNetLink
