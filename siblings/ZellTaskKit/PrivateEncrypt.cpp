#include "SensitiveKey.h"
#include "ZellBase/Log.h"
#include "ZellBase/Util.h"
#include "ZellTaskKit/ClientServices.h"
#include "ZellTaskKitHost/SensitiveKey.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

// A text is Base64 of nonce, ciphered bytes and tag, in this order.
namespace ZellTaskKit::PrivateEncrypt {
namespace {

constexpr std::size_t kNonceBytes = 12;
constexpr std::size_t kTagBytes = 16;
constexpr std::size_t kMaxText = static_cast<std::size_t>(std::numeric_limits<int>::max()) / 2;

struct ContextDeleter
{
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, ContextDeleter>;

// The library would otherwise clean up in an exit handler, while other threads still use it.
Context MakeContext()
{
    OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
    return Context(EVP_CIPHER_CTX_new());
}

unsigned char* Bytes(std::string& text)
{
    return reinterpret_cast<unsigned char*>(text.data());
}

const unsigned char* Bytes(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

bool Encrypt(const SecretKey& key, const std::string& plain, std::string& sealed)
{
    const Context context = MakeContext();
    sealed.assign(kNonceBytes + plain.size() + kTagBytes, '\0');
    unsigned char* nonce = Bytes(sealed);
    unsigned char* ciphered = nonce + kNonceBytes;
    int bytes = 0;
    return context && RAND_bytes(nonce, kNonceBytes) == 1 &&
           EVP_EncryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key.Data(), nonce) == 1 &&
           EVP_EncryptUpdate(context.get(), ciphered, &bytes, Bytes(plain), static_cast<int>(plain.size())) ==
               1 &&
           EVP_EncryptFinal_ex(context.get(), ciphered + plain.size(), &bytes) == 1 &&
           EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, kTagBytes, ciphered + plain.size()) == 1;
}

bool Decrypt(const SecretKey& key, const std::string& sealed, std::string& plain)
{
    if (sealed.size() < kNonceBytes + kTagBytes)
        return false;
    const Context context = MakeContext();
    const unsigned char* nonce = Bytes(sealed);
    const std::size_t size = sealed.size() - kNonceBytes - kTagBytes;
    std::array<unsigned char, kTagBytes> tag{};
    std::copy_n(nonce + kNonceBytes + size, kTagBytes, tag.begin());
    // One byte more, so that there is a buffer to point to for an empty text as well.
    plain.assign(size + 1, '\0');
    int bytes = 0;
    const bool is_genuine =
        context && EVP_DecryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key.Data(), nonce) == 1 &&
        EVP_DecryptUpdate(context.get(), Bytes(plain), &bytes, nonce + kNonceBytes, static_cast<int>(size)) ==
            1 &&
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, kTagBytes, tag.data()) == 1 &&
        EVP_DecryptFinal_ex(context.get(), Bytes(plain) + size, &bytes) == 1;
    if (!is_genuine)
        OPENSSL_cleanse(plain.data(), plain.size());
    plain.resize(is_genuine ? size : 0);
    return is_genuine;
}

void LogFailure(const std::string& reason)
{
    Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogError, "ZellTaskKit", "%s", reason.c_str());
}

}  // namespace

bool AESDecryptForSensitiveInfor(std::string& out, const std::string& in, unsigned int /*reserved*/,
                                 bool /*reserved_flag*/)
{
    // The two arguments may be the same text.
    const std::string text = in;  // NOLINT(performance-unnecessary-copy-initialization)
    out.clear();
    std::string sealed;
    if (text.size() > kMaxText || !Zell::Base::Encrypt::Base64Decode(sealed, text))
        return false;
    SecretKey key;
    std::string reason;
    if (!ReadSensitiveKey(key, reason)) {
        LogFailure(reason);
        return false;
    }
    return Decrypt(key, sealed, out);
}

bool AESEncryptForSensitiveInfor(std::string& out, const std::string& in)
{
    std::string text = in;
    out.clear();
    std::string reason;
    SecretKey key;
    if (text.size() > kMaxText)
        return false;
    if (!EnsureSensitiveKey(reason) || !ReadSensitiveKey(key, reason)) {
        LogFailure(reason);
        return false;
    }
    std::string sealed;
    const bool is_sealed = Encrypt(key, text, sealed);
    OPENSSL_cleanse(text.data(), text.size());
    return is_sealed && Zell::Base::Encrypt::Base64Encode(out, sealed);
}

}  // namespace ZellTaskKit::PrivateEncrypt
