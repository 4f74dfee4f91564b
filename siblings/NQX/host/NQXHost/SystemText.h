#pragma once

#include "NQX/Export.h"

#include <cstddef>
#include <string>

// Texts at the border of the system. Any thread.

// Whether the bytes are valid UTF-8: no surrogates, no overlong forms, nothing above U+10FFFF.
NQX_API bool NQX_IsUtf8(const char* text, std::size_t size);

// Between UTF-8 and the system's code page; the identity where that is UTF-8 (on POSIX also in the plain "C"
// locale). A letter that cannot be converted becomes "?".
NQX_API std::string NQX_UTF8ToLocal(const std::string& text);
NQX_API std::string NQX_LocalToUTF8(const std::string& text);

// A path or command line from a caller as UTF-8: some callers hand over local text, which is told apart by
// not being valid UTF-8. A null pointer counts as an empty text.
NQX_API std::string NQX_PathText(const char* text);
