#include "SensitiveKey.h"

#include "Platform/SecretFile.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Log.h"
#include "ZellTaskKit/ClientServices.h"
#include "ZellTaskKitHost/SensitiveKey.h"

#include <openssl/crypto.h>
#include <openssl/rand.h>

#include <cctype>
#include <optional>
#include <string_view>

namespace ZellTaskKit {
namespace {

std::optional<unsigned> HexDigit(char letter)
{
    if (letter >= '0' && letter <= '9')
        return letter - '0';
    if (letter >= 'a' && letter <= 'f')
        return letter - 'a' + 10;
    if (letter >= 'A' && letter <= 'F')
        return letter - 'A' + 10;
    return std::nullopt;
}

std::string_view Trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

void Wipe(std::string& text)
{
    OPENSSL_cleanse(text.data(), text.size());
}

bool ReadKeyFile(const std::string& path, SecretKey& key, std::string& reason)
{
    SecretFile file;
    if (!ReadSecretFile(path, file)) {
        reason = "The key file " + path + " can't be read: " + file.failure;
        return false;
    }
    if (file.others_may_read)
        Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogWarning, "ZellTaskKit",
                                           "The key file %s can be read by other users", path.c_str());
    const bool is_key = key.SetHex(file.content);
    Wipe(file.content);
    if (!is_key)
        reason = "The file " + path + " holds no key of 64 hexadecimal digits";
    return is_key;
}

bool MakeKey(SecretKey& key)
{
    return RAND_priv_bytes(key.Data(), static_cast<int>(kKeyBytes)) == 1;
}

SecretFileCreation WriteKeyFile(const std::string& path, const SecretKey& key, std::string& reason)
{
    std::string text = key.Hex() + "\n";
    std::string failure;
    const SecretFileCreation creation = CreateSecretFile(path, text, failure);
    Wipe(text);
    if (creation == SecretFileCreation::Failed)
        reason = "The key file " + path + " can't be made: " + failure;
    return creation;
}

// Reads the key, made if there is none yet.
bool ReadOrMakeKey(SecretKey& key, std::string& reason)
{
    const std::string path = SensitiveKeyPath();
    if (SecretFileExists(path))
        return ReadKeyFile(path, key, reason);
    const std::string folder = CFrameSystemConfigMgr::Instance().GetClientDataPath();
    if (Zell::Base::FileSystem::MakeFullDir(folder.c_str()) != 0) {
        reason = "The folder " + folder + " can't be made";
        return false;
    }
    if (!MakeKey(key)) {
        reason = "There are no random numbers for a key";
        return false;
    }
    switch (WriteKeyFile(path, key, reason)) {
        case SecretFileCreation::Created:
            return true;
        case SecretFileCreation::WasThere:  // another process was faster; its key counts
            return ReadKeyFile(path, key, reason);
        case SecretFileCreation::Failed:
            break;
    }
    return false;
}

}  // namespace

SecretKey::~SecretKey()
{
    OPENSSL_cleanse(bytes_.data(), bytes_.size());
}

bool SecretKey::SetHex(const std::string& text)
{
    const std::string_view digits = Trimmed(text);
    if (digits.size() != 2 * kKeyBytes)
        return false;
    for (std::size_t i = 0; i < kKeyBytes; ++i) {
        const std::optional<unsigned> high = HexDigit(digits[2 * i]);
        const std::optional<unsigned> low = HexDigit(digits[2 * i + 1]);
        if (!high || !low)
            return false;
        bytes_[i] = static_cast<unsigned char>(*high * 16 + *low);
    }
    return true;
}

std::string SecretKey::Hex() const
{
    constexpr std::string_view kHex = "0123456789abcdef";
    std::string text;
    text.reserve(2 * kKeyBytes + 1);
    for (const unsigned char byte : bytes_) {
        text += kHex[byte >> 4];
        text += kHex[byte & 15];
    }
    return text;
}

std::string SensitiveKeyPath()
{
    return CFrameSystemConfigMgr::Instance().GetClientDataPath() + "sensitive.key";
}

bool EnsureSensitiveKey(std::string& reason)
{
    SecretKey key;
    return ReadOrMakeKey(key, reason);
}

bool ShareSensitiveKey(const std::string& target, std::string& reason)
{
    SecretKey key;
    if (!ReadOrMakeKey(key, reason))
        return false;
    if (WriteKeyFile(target, key, reason) == SecretFileCreation::Created)
        return true;
    if (!reason.empty())
        return false;
    SecretKey present;
    if (!ReadKeyFile(target, present, reason))
        return false;
    if (CRYPTO_memcmp(present.Data(), key.Data(), kKeyBytes) == 0)
        return true;
    reason = "The file " + target + " holds another key";
    return false;
}

bool ReadSensitiveKey(SecretKey& key, std::string& reason)
{
    return ReadKeyFile(SensitiveKeyPath(), key, reason);
}

}  // namespace ZellTaskKit
