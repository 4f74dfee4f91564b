#include "station/Drawing/Jpeg.h"

#include "station/Data/Database.h"

#include <QBuffer>

namespace Station {
namespace {

constexpr int kQuality = 80;

}  // namespace

std::string ToJpeg(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "JPG", kQuality))
        throw StoreError("The picture can't be written as JPEG; is Qt's image plug-in there?");
    return bytes.toStdString();
}

}  // namespace Station
