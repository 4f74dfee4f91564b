#include "HttpAnswer.h"

#include <algorithm>
#include <charconv>

namespace ZellNetLink {
namespace {

constexpr std::size_t kMaxHeadBytes = 256U << 10;
constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string LowerCase(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    });
    return lower;
}

// "HTTP/1.1 200 OK" gives 200.
long StatusOf(std::string_view line)
{
    const std::size_t blank = line.find(' ');
    long status = 0;
    if (blank != std::string_view::npos)
        std::from_chars(line.data() + blank + 1, line.data() + line.size(), status);
    return status;
}

// Takes a number and the letter behind it off the head of the text.
std::optional<std::int64_t> TakeNumber(std::string_view& text, char behind)
{
    std::int64_t number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto digits = static_cast<std::size_t>(end - text.data());
    if (failure != std::errc() || number < 0)
        return std::nullopt;
    if (behind == '\0' ? digits != text.size() : digits >= text.size() || text[digits] != behind)
        return std::nullopt;
    text.remove_prefix(behind == '\0' ? digits : digits + 1);
    return number;
}

}  // namespace

bool HttpAnswerHead::TakeLine(std::string_view line)
{
    bytes_ += line.size();
    if (bytes_ > kMaxHeadBytes)
        return false;
    if (line.substr(0, 5) == "HTTP/") {
        headers_.clear();
        status_ = StatusOf(line);
        bytes_ = line.size();
        return true;
    }
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos)
        return true;
    const std::string_view value = Trimmed(line.substr(colon + 1));
    const auto [place, is_new] = headers_.try_emplace(LowerCase(Trimmed(line.substr(0, colon))), value);
    if (!is_new)
        place->second.append(", ").append(value);
    return true;
}

std::optional<std::string_view> HttpAnswerHead::Header(const std::string& name) const
{
    const auto found = headers_.find(name);
    if (found == headers_.end())
        return std::nullopt;
    return found->second;
}

std::optional<ContentRange> ParseContentRange(std::string_view value)
{
    constexpr std::string_view kUnit = "bytes ";
    if (LowerCase(value.substr(0, kUnit.size())) != kUnit)
        return std::nullopt;
    value.remove_prefix(kUnit.size());
    const auto first = TakeNumber(value, '-');
    const auto last = first ? TakeNumber(value, '/') : std::nullopt;
    if (!last || *last < *first)
        return std::nullopt;
    ContentRange range;
    range.first = *first;
    range.last = *last;
    if (value == "*")
        return range;
    range.total = TakeNumber(value, '\0');
    if (!range.total || *range.total <= range.last)
        return std::nullopt;
    return range;
}

}  // namespace ZellNetLink
