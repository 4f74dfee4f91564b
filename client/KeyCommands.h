#pragma once

#include "LibraryHost.h"

#include <string>
#include <vector>

namespace FetchyardClient {

// Reads a password from standard input and prints it ciphered, as requests carry it.
int CipherCommand(const HostOptions& options);
// Copies the key of sensitive texts to a file of mode 0600, for a station that is to read them. Another file
// that is there is not replaced.
int ShareKeyCommand(const HostOptions& options, const std::string& target);
// Checks request files against their schema and prints each violation.
int CheckCommand(const std::vector<std::string>& paths);

}  // namespace FetchyardClient
