#pragma once

#include "MultimediaCommHost/Protection.h"

#include <string>

namespace Zell::MultimediaComm {

// A name in the target's folder for a file that becomes the target once it is whole.
std::string NameBeside(const std::string& target);

// Makes a finished file the target, which appears whole or not at all; across file systems by a copy. Throws
// VideoFailure; the source may then still be there.
void MoveIntoPlace(const std::string& source, const std::string& target, const IsStopped& is_stopped);

}  // namespace Zell::MultimediaComm
