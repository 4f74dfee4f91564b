#pragma once

#include <string>

// The text in another code page, "?" for each letter that has no place there; the text itself if the system
// knows no such conversion.
std::string ConvertCodePage(const std::string& text, const char* from, const char* to);
