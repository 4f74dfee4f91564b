#pragma once

#include <QImage>

#include <string>

namespace Station {

// The picture as the bytes of a JPEG file. Throws StoreError if Qt can't do that here.
std::string ToJpeg(const QImage& image);

}  // namespace Station
