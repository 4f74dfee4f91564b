#include "ValidationRule.h"

#include "CellText.h"

#include <algorithm>

namespace ZellOfficeKit {
namespace {

constexpr char kBlanks[] = " \t\r";

std::string Trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The list stands in the workbook as a quoted text of a formula: a double quote is doubled there, and a
// control character can't stand there at all.
std::string AsInFormula(const std::string& entry)
{
    std::string text;
    for (std::size_t at = 0; at < entry.size();) {
        const CodePoint point = ReadCodePoint(entry, at);
        const bool forbidden = point.value < 0x20 || point.value == 0xFFFE || point.value == 0xFFFF;
        AppendCodePoint(text, forbidden ? char32_t(0xFFFD) : point.value);
        if (point.value == U'"')
            text.push_back('"');
        at += point.size;
    }
    return text;
}

}  // namespace

std::vector<std::string> SplitRule(const std::string& rule)
{
    std::vector<std::string> entries;
    std::size_t from = 0;
    while (from <= rule.size()) {
        const std::size_t to = std::min(rule.find_first_of(",\n", from), rule.size());
        std::string entry = AsInFormula(Trimmed(rule.substr(from, to - from)));
        if (!entry.empty())
            entries.push_back(std::move(entry));
        from = to + 1;
    }
    return entries;
}

int RuleCharacters(const std::vector<std::string>& entries)
{
    int units = entries.empty() ? 0 : static_cast<int>(entries.size()) - 1;
    for (const std::string& entry : entries) {
        for (std::size_t at = 0; at < entry.size();) {
            const CodePoint point = ReadCodePoint(entry, at);
            units += point.value >= 0x10000 ? 2 : 1;
            at += point.size;
        }
    }
    return units;
}

}  // namespace ZellOfficeKit
