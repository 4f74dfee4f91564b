#pragma once

#include "Protection/KeyDerivation.h"

#include <openssl/evp.h>

#include <memory>
#include <string_view>

namespace Zell::MultimediaComm {

// What a protected file begins with; the salt follows, then the ciphered bytes.
constexpr std::string_view kProtectedMark = "Salted__";
constexpr std::size_t kHeaderBytes = kProtectedMark.size() + kSaltBytes;

struct CipherDeleter
{
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using Cipher = std::unique_ptr<EVP_CIPHER_CTX, CipherDeleter>;

// AES-256-CBC; null if the library has none.
Cipher MakeCipher(const CipherKey& key, const Block& first, bool is_writing);

}  // namespace Zell::MultimediaComm
