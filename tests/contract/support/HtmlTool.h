#pragma once

#include <string>

namespace contract {

// What the HTML tool read at its last run; empty if it found no input.
std::string HtmlOfTheTool();

}  // namespace contract
