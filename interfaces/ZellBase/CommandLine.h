#pragma once

#include "ZellBase/Export.h"

#include <string>
#include <vector>

namespace Zell::Base::details {

// The words of a command line by the rules of the Windows C runtime, on every platform: blanks and tabs
// separate; a double quote begins or ends a group, a pair of them within a group is one letter; of 2n
// backslashes in front of a double quote n are left, of 2n+1 n and the quote as a letter; all other
// backslashes are letters. In the first word, the program, every backslash is a letter. Blanks at the front
// are passed over.
ZELLBASE_API std::vector<std::string> SplitCommandLine(const std::string& line);

}  // namespace Zell::Base::details
