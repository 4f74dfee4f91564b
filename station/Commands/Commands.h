#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Station {

// What a command ends with.
enum ExitCode : int {
    ExitGood = 0,
    ExitFailed = 1,
    ExitUsage = 2,
    ExitSomeSkipped = 3,  // of an import: not every photograph could be read
};

using CommandLine = std::vector<std::string>;

// Each command gets the words behind its name. Throws UsageError and StoreError.
int SeedCommand(const CommandLine& line);
int ImportCommand(const CommandLine& line);
int ServeCommand(const CommandLine& line);
int AccountCommand(const CommandLine& line);
int TrustCommand(const CommandLine& line);

// Copies a file with a cipher key of 64 hex digits into the data folder, for its owner's eyes only. Throws
// StoreError.
void ShareCipherKey(const std::filesystem::path& key_file, const std::filesystem::path& data);

}  // namespace Station
