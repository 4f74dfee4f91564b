#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>

// GoogleTest's own has no classes of letters and no counts where the system has no POSIX expressions.
MATCHER_P(FitsPattern, pattern, std::string("fits ") + pattern)
{
    return std::regex_match(std::string(arg), std::regex(pattern));
}
