#pragma once

#include "Job.h"

namespace FetchyardClient {

// More than any request needs: a list of a hundred thousand files has some 20 MB.
inline constexpr long long kMostRequestBytes = 32LL << 20;

// Reads a request's file. False, with the reason in words, if it can't be read, is no file or is too large;
// a file that is too large is not read.
bool ReadRequestFile(const std::string& path, RequestSource& source, std::string& reason);

}  // namespace FetchyardClient
