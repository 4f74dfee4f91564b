#pragma once

#include "ZellBase/Log.h"

#include <string>

namespace Zell::MultimediaComm {

// One line in the client's log under this library's name.
inline void WriteVideoLog(int level, const char* function, const std::string& words)
{
    Base::details::IOXTFormatLog(level, "MultimediaComm", "[%s]%s", function, words.c_str());
}

}  // namespace Zell::MultimediaComm
