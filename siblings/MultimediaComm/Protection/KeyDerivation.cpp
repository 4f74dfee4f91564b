// The plain digest calls are deprecated in favour of ones that look their digest up anew in each of over a
// million rounds, which takes four times as long; and the library's own derivation can't be stopped.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "Protection/KeyDerivation.h"

#include <openssl/crypto.h>
#include <openssl/sha.h>

#include <algorithm>

namespace Zell::MultimediaComm {
namespace {

constexpr int kRounds = 600'000;
constexpr int kRoundsBetweenLooks = 4'000;
constexpr std::size_t kHashBlockBytes = 64;

using Digest = std::array<unsigned char, SHA256_DIGEST_LENGTH>;

// HMAC-SHA-256 with the key's two halves digested once and for all.
class Authenticator
{
public:
    explicit Authenticator(const std::string& password)
    {
        std::array<unsigned char, kHashBlockBytes> key = {};
        if (password.size() > key.size())
            SHA256(reinterpret_cast<const unsigned char*>(password.data()), password.size(), key.data());
        else
            std::copy(password.begin(), password.end(), key.begin());
        Begin(inner_, key, 0x36);
        Begin(outer_, key, 0x5c);
        OPENSSL_cleanse(key.data(), key.size());
    }
    Authenticator(const Authenticator&) = delete;
    Authenticator& operator=(const Authenticator&) = delete;
    ~Authenticator()
    {
        OPENSSL_cleanse(&inner_, sizeof inner_);
        OPENSSL_cleanse(&outer_, sizeof outer_);
    }

    Digest Of(const unsigned char* bytes, std::size_t size) const
    {
        Digest digest = {};
        SHA256_CTX context = inner_;
        SHA256_Update(&context, bytes, size);
        SHA256_Final(digest.data(), &context);
        context = outer_;
        SHA256_Update(&context, digest.data(), digest.size());
        SHA256_Final(digest.data(), &context);
        return digest;
    }

private:
    static void Begin(SHA256_CTX& context, std::array<unsigned char, kHashBlockBytes> key, unsigned char pad)
    {
        for (unsigned char& byte : key)
            byte = static_cast<unsigned char>(byte ^ pad);
        SHA256_Init(&context);
        SHA256_Update(&context, key.data(), key.size());
        OPENSSL_cleanse(key.data(), key.size());
    }

    SHA256_CTX inner_ = {};
    SHA256_CTX outer_ = {};
};

// The number-th 32 bytes of the derived text, number from 1.
bool DerivePart(const Authenticator& authenticator, const Salt& salt, unsigned char number, Digest& part,
                const IsStopped& is_stopped)
{
    std::array<unsigned char, kSaltBytes + 4> seed = {};
    std::copy(salt.begin(), salt.end(), seed.begin());
    seed.back() = number;
    Digest round = authenticator.Of(seed.data(), seed.size());
    part = round;
    for (int i = 1; i < kRounds; ++i) {
        if (i % kRoundsBetweenLooks == 0 && is_stopped && is_stopped())
            return false;
        round = authenticator.Of(round.data(), round.size());
        for (std::size_t byte = 0; byte < part.size(); ++byte)
            part[byte] = static_cast<unsigned char>(part[byte] ^ round[byte]);
    }
    return true;
}

}  // namespace

CipherKey::~CipherKey()
{
    OPENSSL_cleanse(key.data(), key.size());
}

bool DeriveKey(const std::string& password, const Salt& salt, CipherKey& key, const IsStopped& is_stopped)
{
    const Authenticator authenticator(password);
    Digest part = {};
    if (!DerivePart(authenticator, salt, 1, part, is_stopped))
        return false;
    std::copy(part.begin(), part.end(), key.key.begin());
    if (!DerivePart(authenticator, salt, 2, part, is_stopped))
        return false;
    std::copy_n(part.begin(), key.first.size(), key.first.begin());
    OPENSSL_cleanse(part.data(), part.size());
    return true;
}

}  // namespace Zell::MultimediaComm
