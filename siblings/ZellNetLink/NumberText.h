#pragma once

#include <optional>
#include <string>
#include <string_view>

// Numbers as they stand in a record's text.
namespace ZellNetLink {

// The integer in the text: digits with an optional sign, nothing else. Beyond 32 bits the low 32 bits count,
// so that an unsigned identifier written by one side comes back as the same bits.
std::optional<int> IntegerFromText(std::string_view text);
// The integer of a JSON number: as above if it is written as one; with a fraction or an exponent the value
// cut toward zero, and again its low 32 bits. Nothing from 2^63 on.
std::optional<int> IntegerFromJsonNumber(std::string_view text);
// Nothing if the number does not fit a float.
std::optional<float> FloatFromJsonNumber(std::string_view text);
// The shortest text that reads back as the same value; nothing for an infinity or no number.
std::optional<std::string> JsonNumberFromFloat(float value);

}  // namespace ZellNetLink
