#pragma once

#include "ZellBase/Log.h"

// One line of this library: level, qualified name of the function, format, at least one argument.
#define FETCHYARD_LOGICAL_LOG(level, function, format, ...)                                           \
    Zell::Base::details::IOXTFormatLog(level, "FetchyardLogical", "[%s]" format "[%s(%d)]", function, \
                                       __VA_ARGS__, __FILE__, __LINE__)
