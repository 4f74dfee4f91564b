#pragma once

#include "station/Evidence/Evidence.h"

#include <string>
#include <vector>

namespace Station {

// The list as a page for a person; case_number is what it was asked for, or empty.
std::string RenderEvidencePage(const std::vector<Evidence>& list, const std::string& case_number);

}  // namespace Station
