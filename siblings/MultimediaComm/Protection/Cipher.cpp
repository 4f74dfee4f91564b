#include "Protection/Cipher.h"

#include <openssl/crypto.h>

namespace Zell::MultimediaComm {

// The library would otherwise clean up in an exit handler, while other threads still use it.
Cipher MakeCipher(const CipherKey& key, const Block& first, bool is_writing)
{
    OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
    Cipher cipher(EVP_CIPHER_CTX_new());
    if (!cipher || EVP_CipherInit_ex(cipher.get(), EVP_aes_256_cbc(), nullptr, key.key.data(), first.data(),
                                     is_writing ? 1 : 0) != 1)
        return nullptr;
    return cipher;
}

}  // namespace Zell::MultimediaComm
