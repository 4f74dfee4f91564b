#include "ZellBase/Util.h"

#include <array>
#include <cstddef>

namespace Zell::Base::Encrypt {
namespace {

constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned char kNoLetter = 0xFF;

constexpr std::array<unsigned char, 256> MakeValues()
{
    std::array<unsigned char, 256> values{};
    for (auto& value : values)
        value = kNoLetter;
    for (unsigned char i = 0; i < 64; ++i)
        values[static_cast<unsigned char>(kLetters[i])] = i;
    return values;
}
constexpr std::array<unsigned char, 256> kValues = MakeValues();

bool IsBlank(char letter)
{
    return letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n';
}

// Collects six bits a letter. Padding may only fill up the last group, and bits that belong to no byte are 0.
class Decoder
{
public:
    bool Add(char letter, std::string& out)
    {
        if (letter == '=') {
            ++padding_;
            return padding_ <= 2;
        }
        const unsigned char value = kValues[static_cast<unsigned char>(letter)];
        if (value == kNoLetter || padding_ > 0)
            return false;
        ++letters_;
        bits_ = (bits_ << 6) | value;
        bit_count_ += 6;
        if (bit_count_ >= 8) {
            bit_count_ -= 8;
            out += static_cast<char>((bits_ >> bit_count_) & 0xFF);
            bits_ &= (1u << bit_count_) - 1;
        }
        return true;
    }

    bool IsWhole() const { return (letters_ + padding_) % 4 == 0 && bits_ == 0; }

private:
    unsigned int bits_ = 0;
    unsigned int bit_count_ = 0;
    std::size_t letters_ = 0;
    std::size_t padding_ = 0;
};

}  // namespace

bool Base64Encode(std::string& out, const std::string& in)
{
    std::string text;
    text.reserve((in.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < in.size(); at += 3) {
        const std::size_t bytes = in.size() - at < 3 ? in.size() - at : 3;
        unsigned int bits = 0;
        for (std::size_t i = 0; i < 3; ++i)
            bits = (bits << 8) | (i < bytes ? static_cast<unsigned char>(in[at + i]) : 0u);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= bytes ? kLetters[(bits >> (18 - 6 * i)) & 0x3F] : '=';
    }
    out = std::move(text);
    return true;
}

bool Base64Decode(std::string& out, const std::string& in)
{
    std::string bytes;
    bytes.reserve(in.size() / 4 * 3);
    Decoder decoder;
    bool good = true;
    for (std::size_t at = 0; good && at < in.size(); ++at)
        good = IsBlank(in[at]) || decoder.Add(in[at], bytes);
    good = good && decoder.IsWhole();
    if (!good)
        bytes.clear();
    out = std::move(bytes);
    return good;
}

}  // namespace Zell::Base::Encrypt
