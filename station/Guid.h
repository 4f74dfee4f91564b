#pragma once

#include <string>
#include <string_view>

namespace Station {

// A new name that nobody guesses: "0f8fad5b-d9cb-469f-a165-70867728950e". Throws StoreError if the system
// gives no random numbers.
std::string NewGuid();

// True for a text of that form, in small letters; such a text is safe as a file's name.
bool IsGuid(std::string_view text);

}  // namespace Station
