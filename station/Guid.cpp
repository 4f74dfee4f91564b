#include "station/Guid.h"

#include "station/Data/Database.h"

#include <openssl/rand.h>

#include <array>

namespace Station {
namespace {

constexpr std::string_view kForm = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::size_t kBytes = 16;

}  // namespace

std::string NewGuid()
{
    std::array<unsigned char, kBytes> bytes{};
    if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1)
        throw StoreError("The system gives no random numbers.");
    // Version 4, a random one, and the variant that says how to read it.
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);
    std::string guid(kForm);
    std::size_t digit = 0;
    for (char& letter : guid) {
        if (letter == '-')
            continue;
        const unsigned byte = bytes[digit / 2];
        letter = kDigits[digit % 2 == 0 ? byte >> 4 : byte & 15u];
        ++digit;
    }
    return guid;
}

bool IsGuid(std::string_view text)
{
    if (text.size() != kForm.size())
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool is_good =
            kForm[i] == '-' ? text[i] == '-' : kDigits.find(text[i]) != std::string_view::npos;
        if (!is_good)
            return false;
    }
    return true;
}

}  // namespace Station
