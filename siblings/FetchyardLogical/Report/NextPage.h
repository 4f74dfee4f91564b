#pragma once

#include <string>

namespace FetchyardLogical::details {

// The number behind the first "PageIndex": of a request text; 0 if there is none.
long PageInRequest(const std::string& request);

// The text that asks for the page behind: what stands between the key and the next comma is the number plus
// one. Empty if there is no key, no comma behind it or no number from 1 to 2147483646.
std::string RequestOfNextPage(const std::string& request);

}  // namespace FetchyardLogical::details
