#pragma once

#include "ZellTaskKit/Export.h"

#include <string>

// The key of sensitive texts, for the program that hosts the libraries: 32 random bytes as a file of 64
// hexadecimal digits and a line feed, readable by its owner only. Any thread and any number of processes.
namespace ZellTaskKit {

// "sensitive.key" in the client's data folder.
ZELLTASKKIT_API std::string SensitiveKeyPath();
// Makes the key unless there is one. False, with the reason in words, if there is none then or the file holds
// no key; such a file is left as it is, since what was ciphered with it would be lost.
ZELLTASKKIT_API bool EnsureSensitiveKey(std::string& reason);
// Writes a copy of the key, made if there is none, for a server that shall read the client's texts. An equal
// file may be there already; another one is not replaced.
ZELLTASKKIT_API bool ShareSensitiveKey(const std::string& target, std::string& reason);

}  // namespace ZellTaskKit
