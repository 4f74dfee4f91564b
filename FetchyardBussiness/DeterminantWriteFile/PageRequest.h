#pragma once

#include <string>

namespace FetchyardBussiness {

// The member of a request text that names the page.
inline constexpr char kPageIndexKey[] = "\"PageIndex\":";

// The request text with another page number. Empty if the text has no page number or no comma behind it.
std::string RewritePage(const std::string& text, int page);

}  // namespace FetchyardBussiness
