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

// A text as a worksheet cell can hold it.
struct CellText
{
    const char* text = "";  // points into the source or into the scratch text
    bool is_cut = false;    // the source has more characters than the cell can hold
};

// Makes a text fit for a cell: invalid UTF-8, zero bytes and the two code points that XML forbids become
// U+FFFD; "_x0041_" is escaped, since readers would show "A"; what lies behind max_units is cut, never inside
// a code point. Units are UTF-16, as readers of the format count; where a text is escaped, the escape counts.
// A plain text is not copied.
CellText FitCellText(const std::string& source, std::string& scratch, int max_units);

}  // namespace ZellOfficeKit
