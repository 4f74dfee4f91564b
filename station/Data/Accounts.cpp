#include "station/Data/Accounts.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <openssl/sha.h>

#include <array>
#include <cctype>
#include <chrono>
#include <memory>
#include <vector>

namespace Station {
namespace {

constexpr int kRounds = 120000;
constexpr std::size_t kSaltBytes = 16;
constexpr std::size_t kHashBytes = 32;
constexpr std::size_t kNonceBytes = 12;
constexpr std::size_t kTagBytes = 16;
constexpr std::size_t kKeyDigits = 64;
constexpr std::size_t kMostKnown = 1000;

using Bytes = std::vector<unsigned char>;

std::string ToHex(const unsigned char* bytes, std::size_t size)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 15];
    }
    return text;
}

Bytes FromHex(const std::string& text)
{
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2)
        bytes.push_back(static_cast<unsigned char>(std::stoi(text.substr(i, 2), nullptr, 16)));
    return bytes;
}

std::string HashPassword(const std::string& password, const std::string& salt, int rounds)
{
    std::array<unsigned char, kHashBytes> hash{};
    if (PKCS5_PBKDF2_HMAC(password.data(), static_cast<int>(password.size()),
                          reinterpret_cast<const unsigned char*>(salt.data()), static_cast<int>(salt.size()),
                          rounds, EVP_sha256(), static_cast<int>(hash.size()), hash.data()) != 1)
        throw StoreError("The password can't be hashed.");
    return ToHex(hash.data(), hash.size());
}

std::string RandomHex(std::size_t size)
{
    Bytes bytes(size);
    if (RAND_bytes(bytes.data(), static_cast<int>(size)) != 1)
        throw StoreError("The system gives no random numbers.");
    return ToHex(bytes.data(), size);
}

}  // namespace

void SetAccount(Database& database, const std::string& name, const std::string& password)
{
    const std::string salt = RandomHex(kSaltBytes);
    Statement insert =
        database.Prepare("INSERT OR REPLACE INTO accounts(name, salt, hash, rounds) VALUES(?, ?, ?, ?)");
    const std::string hash = HashPassword(password, salt, kRounds);
    insert.Add(std::string_view(name)).Add(std::string_view(salt)).Add(std::string_view(hash));
    insert.Add(std::int64_t{kRounds});
    insert.Run();
}

AccountCheck::AccountCheck(Store& store) : store_(store), secret_(RandomHex(kSaltBytes)) {}

bool AccountCheck::IsRight(const std::string& name, const std::string& password)
{
    std::string hash;
    std::string salt;
    int rounds = 0;
    {
        const Store::Loan database = store_.Borrow();
        Statement query = database->Prepare("SELECT hash, salt, rounds FROM accounts WHERE name = ?");
        query.Add(std::string_view(name));
        if (!query.Step())
            return false;
        hash = query.Text(0);
        salt = query.Text(1);
        rounds = static_cast<int>(query.Int(2));
    }
    const std::string pair = secret_ + hash + password;
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    SHA256(reinterpret_cast<const unsigned char*>(pair.data()), pair.size(), digest.data());
    const std::string key = ToHex(digest.data(), digest.size());
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (known_.count(key) > 0)
            return true;
    }
    const std::string given = HashPassword(password, salt, rounds);
    if (given.size() != hash.size() || CRYPTO_memcmp(given.data(), hash.data(), hash.size()) != 0)
        return false;
    const std::lock_guard<std::mutex> lock(mutex_);
    if (known_.size() >= kMostKnown)
        known_.clear();
    known_.insert(key);
    return true;
}

std::string AccountCheck::RefusalOf(const std::string& name, const std::string& ciphered, bool& is_wrong)
{
    const std::string key = store_.CipherKey();
    std::string password;
    if (!IsCipherKey(key))
        return "The station shares no cipher key with the client; give it one with: fetchyard-station trust.";
    if (!Decipher(key, ciphered, password))
        return "The password was not ciphered with the key that the station shares.";
    is_wrong = !IsRight(name, password);
    return is_wrong ? "The user name or the password is wrong." : "";
}

AccountCheck::Verdict AccountCheck::CheckCiphered(const std::string& name, const std::string& ciphered)
{
    const auto clock = std::chrono::steady_clock::now().time_since_epoch();
    const std::int64_t now = std::chrono::duration_cast<std::chrono::seconds>(clock).count();
    Verdict verdict;
    verdict.remaining = tries_.Of(name, now);
    if (verdict.remaining.closed_seconds > 0) {
        verdict.refusal = "The account is closed for a while after " + std::to_string(LoginTries::kTries) +
                          " wrong passwords.";
        return verdict;
    }
    bool is_wrong = false;
    verdict.refusal = RefusalOf(name, ciphered, is_wrong);
    if (is_wrong)
        verdict.remaining = tries_.CountWrong(name, now);
    if (verdict.refusal.empty())
        tries_.CountRight(name);
    return verdict;
}

bool DecodeBase64(const std::string& text, std::string& bytes)
{
    if (text.size() % 4 != 0)
        return false;
    Bytes decoded(text.size() / 4 * 3 + 1);
    const int size = EVP_DecodeBlock(decoded.data(), reinterpret_cast<const unsigned char*>(text.data()),
                                     static_cast<int>(text.size()));
    if (size < 0)
        return false;
    // OpenSSL counts the padding as bytes.
    std::size_t padding = 0;
    while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=')
        ++padding;
    bytes.assign(decoded.begin(), decoded.begin() + size - static_cast<std::ptrdiff_t>(padding));
    return true;
}

bool IsCipherKey(const std::string& digits)
{
    if (digits.size() != kKeyDigits)
        return false;
    for (const char digit : digits)
        if (std::isxdigit(static_cast<unsigned char>(digit)) == 0)
            return false;
    return true;
}

bool Decipher(const std::string& key_digits, const std::string& text, std::string& plain)
{
    std::string sealed;
    if (!IsCipherKey(key_digits) || !DecodeBase64(text, sealed) || sealed.size() < kNonceBytes + kTagBytes)
        return false;
    const Bytes key = FromHex(key_digits);
    Bytes bytes(sealed.begin(), sealed.end());
    const std::size_t size = bytes.size() - kNonceBytes - kTagBytes;
    Bytes opened(size + 1);
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  EVP_CIPHER_CTX_free);
    int length = 0;
    int rest = 0;
    const bool is_good =
        context != nullptr &&
        EVP_DecryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key.data(), bytes.data()) == 1 &&
        EVP_DecryptUpdate(context.get(), opened.data(), &length, bytes.data() + kNonceBytes,
                          static_cast<int>(size)) == 1 &&
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, static_cast<int>(kTagBytes),
                            bytes.data() + kNonceBytes + size) == 1 &&
        EVP_DecryptFinal_ex(context.get(), opened.data() + length, &rest) == 1;
    if (!is_good)
        return false;
    plain.assign(opened.begin(), opened.begin() + length + rest);
    return true;
}

}  // namespace Station
