#pragma once

#include "MultimediaCommHost/AvPointers.h"

#include <string>

namespace Zell::MultimediaComm {

// The picture as a JPEG, turned clockwise by so many quarters. Throws VideoFailure.
std::string EncodeJpeg(const AVFrame& picture, int quarter_turns);

}  // namespace Zell::MultimediaComm
