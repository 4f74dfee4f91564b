#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace ZellTaskKit {

inline constexpr std::size_t kKeyBytes = 32;

// The bytes of a key, wiped when they go.
class SecretKey
{
public:
    SecretKey() = default;
    SecretKey(const SecretKey&) = delete;
    SecretKey& operator=(const SecretKey&) = delete;
    ~SecretKey();

    unsigned char* Data() { return bytes_.data(); }
    const unsigned char* Data() const { return bytes_.data(); }
    // False if the text is not 64 hexadecimal digits with white space around them at most.
    bool SetHex(const std::string& text);
    std::string Hex() const;

private:
    std::array<unsigned char, kKeyBytes> bytes_{};
};

bool ReadSensitiveKey(SecretKey& key, std::string& reason);

}  // namespace ZellTaskKit
