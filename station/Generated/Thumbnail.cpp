#include "station/Generated/Thumbnail.h"

#include "station/Drawing/EventPictures.h"
#include "station/Drawing/Jpeg.h"

#include <QBuffer>
#include <QImageReader>

namespace Station {
namespace {

constexpr int kDotsPerMetre = 3780;  // 96 an inch: a pixel of a sheet

}  // namespace

std::string Thumbnail(EventPictures& pictures, const Event& event)
{
    std::string bytes;
    std::string reason;
    if (!pictures.Get(event, bytes, reason))
        return {};
    QByteArray source = QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size()));
    QBuffer input(&source);
    QImageReader reader(&input);
    // Scaled while it is decoded, which a JPEG does in a fraction of the time.
    const QSize size = reader.size();
    if (size.isValid())
        reader.setScaledSize(size.scaled(kThumbnailWidth, kThumbnailHeight, Qt::KeepAspectRatio));
    reader.setAutoTransform(true);
    QImage image = reader.read();
    if (image.isNull())
        return {};
    if (image.height() > kThumbnailHeight)  // a photograph that was turned upright
        image = image.scaledToHeight(kThumbnailHeight, Qt::SmoothTransformation);
    image.setDotsPerMeterX(kDotsPerMetre);
    image.setDotsPerMeterY(kDotsPerMetre);
    return ToJpeg(image);
}

}  // namespace Station
