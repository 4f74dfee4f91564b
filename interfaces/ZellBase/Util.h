#pragma once

#include "ZellBase/Export.h"

#include <cstdint>
#include <string>

namespace Zell::Base {

namespace GuidUtil {
// A new random guid, 36 letters: lower case hexadecimal in groups of 8, 4, 4, 4 and 12 with "-" between.
ZELLBASE_API std::string CreateGuid();
}  // namespace GuidUtil

namespace StringUtil {
// printf into a string of any length.
ZELLBASE_API std::string str_fmt(const char* format, ...) ZELL_PRINTF(1, 2);
// The text with every occurrence of from replaced, left to right; the text itself if from is empty.
ZELLBASE_API std::string StringReplace(const std::string& text, const std::string& from,
                                       const std::string& to);
}  // namespace StringUtil

namespace TimeUtil {
// Local date and time of seconds since 1970 as "20260131_235959": names folders, so it holds no separator.
ZELLBASE_API std::string TimeT2StrShortDatetime(std::int64_t time);
}  // namespace TimeUtil

namespace Encrypt {
// Standard alphabet with padding, no line breaks. out is replaced.
ZELLBASE_API bool Base64Encode(std::string& out, const std::string& in);
// False, with an empty out, if the text is not Base64; white space between letters is passed over.
ZELLBASE_API bool Base64Decode(std::string& out, const std::string& in);
}  // namespace Encrypt

namespace ProcessUtil {
// Runs a command line and, with wait, returns when the process has ended. The line is split by the rules of
// the Windows C runtime on every platform: blanks and tabs separate, double quotes group, backslashes escape
// only in front of a double quote; an apostrophe or a dollar sign is a letter. No shell is involved. The
// first word names the program; one that ends in ".exe" is found without that suffix on POSIX. The process
// gets its own process group, no inherited descriptors, and the null device as its standard streams. True: it
// started and, with wait, ended with exit code 0. hide asks for no window. process, if not null, gets a
// handle where wait is false (null otherwise).
ZELLBASE_API bool LaunchApp(const std::string& command, bool wait, bool hide, void** process);
}  // namespace ProcessUtil

// Between UTF-8 and the system's code page; the identity where that code page is UTF-8. Letters that the code
// page lacks become "?".
ZELLBASE_API std::string UTF8ToLocal(const std::string& text);
ZELLBASE_API std::string LocalToUTF8(const std::string& text);
// Whether the text is valid UTF-8 (no surrogates, no overlong forms). The empty text is.
ZELLBASE_API bool IsUtf8(const std::string& text);

}  // namespace Zell::Base
