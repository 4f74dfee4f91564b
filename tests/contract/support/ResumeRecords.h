#pragma once

#include <string>

// Resume records are read by other programs and by later versions of this one: the files in golden/ are what
// they find behind the Base64.
namespace contract {

std::string Decoded(const std::string& base64);
std::string Encoded(const std::string& text);
// A file of golden/, without the line feed at its end.
std::string Golden(const std::string& name);

}  // namespace contract
