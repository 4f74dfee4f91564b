#include "NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace ZellNetLink {
namespace {

std::optional<double> DoubleFromText(std::string_view text)
{
    double value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
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
