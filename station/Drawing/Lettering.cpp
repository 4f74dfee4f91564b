#include "station/Drawing/Lettering.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainterPath>
#include <QString>

namespace Station {
namespace {

constexpr int kPixels = 26;
constexpr int kRim = 3;

QImage DrawLetter(const QFont& font, QChar letter, int width, int height, int ascent, bool has_rim)
{
    QImage image(width + 2 * kRim, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainterPath path;
    path.addText(kRim, ascent, font, QString(letter));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    if (has_rim)
        painter.strokePath(path,
                           QPen(QColor(0, 0, 0, 210), kRim, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(path, has_rim ? Qt::white : Qt::black);
    return image;
}

}  // namespace

const Lettering& Lettering::Instance()
{
    static const auto* lettering = new Lettering;
    return *lettering;
}

Lettering::Lettering()
{
    QFont font("DejaVu Sans");
    font.setPixelSize(kPixels);
    font.setBold(true);
    const QFontMetrics metrics(font);
    height_ = metrics.height() + 2 * kRim;
    for (int i = 0; i < kCount; ++i) {
        const QChar letter(static_cast<ushort>(kFirst + i));
        Letter& entry = letters_[static_cast<std::size_t>(i)];
        entry.advance = metrics.horizontalAdvance(letter);
        entry.rimmed = DrawLetter(font, letter, entry.advance, height_, metrics.ascent() + kRim, true);
        entry.plain = DrawLetter(font, letter, entry.advance, height_, metrics.ascent() + kRim, false);
    }
}

const Lettering::Letter& Lettering::At(QChar letter) const
{
    const int index = letter.unicode() - kFirst;
    return letters_[static_cast<std::size_t>(index >= 0 && index < kCount ? index : '?' - kFirst)];
}

int Lettering::Width(const std::string& text) const
{
    int width = 2 * kRim;
    for (const QChar letter : QString::fromStdString(text))
        width += At(letter).advance;
    return width;
}

void Lettering::Draw(QPainter& painter, int left, int top, const std::string& text) const
{
    for (const QChar letter : QString::fromStdString(text)) {
        painter.drawImage(left, top, At(letter).rimmed);
        left += At(letter).advance;
    }
}

void Lettering::DrawPlain(QPainter& painter, const QRectF& box, const std::string& text) const
{
    const double scale = qMin(box.width() / Width(text), box.height() / (height_ * 0.8));
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(box.center());
    painter.scale(scale, scale);
    int left = -Width(text) / 2;
    for (const QChar letter : QString::fromStdString(text)) {
        painter.drawImage(left, -height_ / 2, At(letter).plain);
        left += At(letter).advance;
    }
    painter.restore();
}

}  // namespace Station
