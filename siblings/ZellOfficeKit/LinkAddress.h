#pragma once

#include <string>

namespace ZellOfficeKit {

// The most characters that the format takes for the address of a link.
constexpr int kMostLinkCharacters = 2079;

// Makes the address of a link as a workbook stores it: a percent-encoded address with a scheme. A path of a
// file (POSIX, with a drive letter, or of a network share) becomes a "file:" address; one that is relative is
// taken from the current folder. A text with a scheme stays an address: what is percent-encoded already is
// left as it is. A text that begins with "www." gets "http://". Empty if the target is none of these or
// longer than the format takes.
std::string MakeLinkAddress(const std::string& target);

}  // namespace ZellOfficeKit
