#pragma once

#include <cstddef>
#include <string>

namespace ZellOfficeKit {

// Where text stands in a byte string and what was read there.
struct CodePoint
{
    char32_t value = 0xFFFD;  // U+FFFD for bytes that are no UTF-8
    std::size_t size = 1;     // bytes read, at least 1
};

// Reads the code point at position at, which lies inside the text. Bytes that are no UTF-8 (overlong forms,
// surrogates and cut sequences among them) read as U+FFFD, one for each maximal part.
CodePoint ReadCodePoint(const std::string& text, std::size_t at);
void AppendCodePoint(std::string& text, char32_t point);

// Bytes of the longest beginning that has at most max_units characters and ends between two of them.
// Characters are UTF-16 units, as readers of the format count.
std::size_t FittingBytes(const std::string& text, int max_units);

// Appends the first size bytes of a text as the XML of a cell's text. Invalid UTF-8, zero bytes and the two
// code points that XML forbids become U+FFFD; control characters become the format's own "_x0007_", and a
// text that looks like one is escaped, so that readers show it as it is.
void AppendCellXml(std::string& xml, const std::string& text, std::size_t size);

}  // namespace ZellOfficeKit
