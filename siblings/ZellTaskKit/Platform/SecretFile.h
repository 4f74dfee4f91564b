#pragma once

#include <string>

// Small files that only their owner may read.
namespace ZellTaskKit {

enum class SecretFileCreation { Created, WasThere, Failed };

struct SecretFile
{
    std::string content;
    bool others_may_read = false;
    std::string failure;  // in words
};

bool SecretFileExists(const std::string& path);
// The file appears under its name whole or not at all, and never replaces one; on Failed the reason is in
// words.
SecretFileCreation CreateSecretFile(const std::string& path, const std::string& content,
                                    std::string& failure);
// At most 4 KiB are read.
bool ReadSecretFile(const std::string& path, SecretFile& file);

}  // namespace ZellTaskKit
