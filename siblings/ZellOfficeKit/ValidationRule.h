#pragma once

#include <string>
#include <vector>

namespace ZellOfficeKit {

// The most characters that the format takes for all entries of a list with the commas between them.
constexpr int kMostRuleCharacters = 255;

// The entries of a rule: separated by commas or line feeds, without blanks around them, empty ones left out.
std::vector<std::string> SplitRule(const std::string& rule);
// UTF-16 units of the entries with the commas between them, as the format counts them.
int RuleCharacters(const std::vector<std::string>& entries);

}  // namespace ZellOfficeKit
