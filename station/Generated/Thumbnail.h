#pragma once

#include "station/Data/Store.h"

#include <string>

namespace Station {

class EventPictures;

inline constexpr int kThumbnailWidth = 320;   // pixels, at most
inline constexpr int kThumbnailHeight = 180;  // pixels, at most

// The event's picture as a small JPEG, or nothing if it can't be read.
std::string Thumbnail(EventPictures& pictures, const Event& event);

}  // namespace Station
