#pragma once

#include "station/Data/LoginTries.h"
#include "station/Data/Store.h"

#include <mutex>
#include <set>
#include <string>

namespace Station {

// Stores the password as a salted PBKDF2 hash; an account of that name gets the new password. Throws
// StoreError.
void SetAccount(Database& database, const std::string& name, const std::string& password);

// Answers whether a name and a password belong together. Any thread.
class AccountCheck
{
public:
    explicit AccountCheck(Store& store);

    bool IsRight(const std::string& name, const std::string& password);

    struct Verdict
    {
        std::string refusal;  // the reason in words; empty if the password is right
        LoginTries::Remaining remaining;
    };
    // The same for a password ciphered by a client that shares the station's key, whose wrong tries are
    // counted. What was ciphered with another key is no try.
    Verdict CheckCiphered(const std::string& name, const std::string& ciphered);

private:
    std::string RefusalOf(const std::string& name, const std::string& ciphered, bool& is_wrong);

    Store& store_;
    LoginTries tries_;
    const std::string secret_;  // of this process
    std::mutex mutex_;
    // Digests of pairs found right: the hash is slow on purpose, and every page of a report asks.
    std::set<std::string> known_;
};

bool DecodeBase64(const std::string& text, std::string& bytes);

// AES-256-GCM; the text is Base64 of the nonce (12 bytes), the cipher text and the tag (16 bytes), the key 64
// hex digits. False if the key is none or the text was not made with it.
bool Decipher(const std::string& key_digits, const std::string& text, std::string& plain);

// True for 64 hex digits.
bool IsCipherKey(const std::string& digits);

}  // namespace Station
