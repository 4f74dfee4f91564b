#include "RecordPath.h"

#include "Utf8Text.h"

#include <charconv>
#include <cstdint>

namespace ZellNetLink {
namespace {

bool IsDigits(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::optional<std::size_t> NumberOf(std::string_view digits)
{
    std::uint32_t number = 0;
    const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (failure != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return number;
}

PathStep NameStep(std::string_view name)
{
    PathStep step;
    step.name = Utf8Repaired(name);
    if (IsDigits(name))
        step.bare_number = NumberOf(name);
    return step;
}

// Takes "[12]" off the end of the piece and gives what stands between the brackets.
std::optional<std::string_view> TakeBrackets(std::string_view& piece)
{
    if (piece.empty() || piece.back() != ']')
        return std::nullopt;
    const std::size_t open = piece.rfind('[');
    if (open == std::string_view::npos)
        return std::nullopt;
    const std::string_view digits = piece.substr(open + 1, piece.size() - open - 2);
    if (!IsDigits(digits))
        return std::nullopt;
    piece = piece.substr(0, open);
    return digits;
}

bool AppendPiece(std::string_view piece, RecordPath& path)
{
    RecordPath indices;
    while (const std::optional<std::string_view> digits = TakeBrackets(piece)) {
        const std::optional<std::size_t> number = NumberOf(*digits);
        if (!number || *number == 0)
            return false;
        PathStep step;
        step.kind = PathStep::Kind::Index;
        step.index = *number - 1;
        indices.push_back(step);
    }
    if (!piece.empty())
        path.push_back(NameStep(piece));
    path.insert(path.end(), indices.rbegin(), indices.rend());
    return true;
}

}  // namespace

std::optional<RecordPath> ParseRecordPath(std::string_view path)
{
    RecordPath steps;
    while (!path.empty()) {
        const std::size_t end = path.find('/');
        const std::string_view piece = path.substr(0, end);
        if (!piece.empty() && !AppendPiece(piece, steps))
            return std::nullopt;
        path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
    }
    return steps;
}

}  // namespace ZellNetLink
