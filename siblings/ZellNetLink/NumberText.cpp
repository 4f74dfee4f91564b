#include "NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace ZellNetLink {
namespace {

// Tells a number that is too small for its type from one that is too large, since the library does not.
bool IsBelowOne(std::string_view number)
{
    const std::size_t end = std::min(number.find_first_of("eE"), number.size());
    const std::string_view digits = number.substr(0, end);
    std::string_view exponent = number.substr(std::min(end + 1, number.size()));
    if (!exponent.empty() && exponent.front() == '+')
        exponent.remove_prefix(1);
    std::int32_t power = 0;
    if (std::from_chars(exponent.data(), exponent.data() + exponent.size(), power).ec ==
        std::errc::result_out_of_range)
        return exponent.front() == '-';
    const auto point = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
    const auto first = static_cast<std::int64_t>(std::min(digits.find_first_of("123456789"), digits.size()));
    // The exponent of the number once it is written as 0.d, d its first digit that counts.
    return (first < point ? point - first : point - first + 1) + power <= 0;
}

std::optional<double> DoubleFromText(std::string_view text)
{
    double value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure == std::errc::result_out_of_range && IsBelowOne(text))
        return 0.0;
    if (failure != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

}  // namespace

std::optional<int> IntegerFromText(std::string_view text)
{
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+'))
        text.remove_prefix(1);
    if (text.empty())
        return std::nullopt;
    std::uint32_t bits = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9')
            return std::nullopt;
        bits = bits * 10U + static_cast<std::uint32_t>(digit - '0');
    }
    return static_cast<int>(negative ? 0U - bits : bits);
}

std::optional<int> IntegerFromJsonNumber(std::string_view text)
{
    if (const std::optional<int> integer = IntegerFromText(text))
        return integer;
    const std::optional<double> value = DoubleFromText(text);
    constexpr double kLimit = 9223372036854775808.0;  // 2^63
    if (!value || *value >= kLimit || *value <= -kLimit)
        return std::nullopt;
    return static_cast<int>(static_cast<std::uint32_t>(static_cast<std::int64_t>(*value)));
}

std::optional<float> FloatFromJsonNumber(std::string_view text)
{
    const std::optional<double> value = DoubleFromText(text);
    if (!value || std::abs(*value) > static_cast<double>(std::numeric_limits<float>::max()))
        return std::nullopt;
    return static_cast<float>(*value);
}

std::optional<std::string> JsonNumberFromFloat(float value)
{
    if (!std::isfinite(value))
        return std::nullopt;
    std::array<char, 64> buffer{};
    const auto [end, failure] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    if (failure != std::errc())
        return std::nullopt;
    return std::string(buffer.data(), end);
}

}  // namespace ZellNetLink
