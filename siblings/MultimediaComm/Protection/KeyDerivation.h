#pragma once

#include "MultimediaCommHost/Protection.h"

#include <array>
#include <cstddef>

namespace Zell::MultimediaComm {

constexpr std::size_t kSaltBytes = 8;
constexpr std::size_t kBlockBytes = 16;
constexpr std::size_t kCipherKeyBytes = 32;

using Salt = std::array<unsigned char, kSaltBytes>;
using Block = std::array<unsigned char, kBlockBytes>;

// Key and first block of a file; wiped when it goes.
struct CipherKey
{
    CipherKey() = default;
    CipherKey(const CipherKey&) = default;
    CipherKey& operator=(const CipherKey&) = default;
    ~CipherKey();

    std::array<unsigned char, kCipherKeyBytes> key = {};
    Block first = {};
};

// PBKDF2 with HMAC-SHA-256 in 600,000 rounds; some tenths of a second, during which is_stopped is asked some
// hundred times. False if it was stopped.
bool DeriveKey(const std::string& password, const Salt& salt, CipherKey& key, const IsStopped& is_stopped);

}  // namespace Zell::MultimediaComm
