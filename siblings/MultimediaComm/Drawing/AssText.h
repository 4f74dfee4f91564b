#pragma once

#include "Drawing/TextRenderer.h"

#include <string>
#include <vector>

namespace Zell::MultimediaComm {

// The items as a script of libass, one event each, all at time 0.
std::string AssScript(const std::vector<TextItem>& items, int width, int height);

}  // namespace Zell::MultimediaComm
