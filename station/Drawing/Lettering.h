#pragma once

#include <QImage>
#include <QPainter>

#include <array>
#include <string>

namespace Station {

// Letters for burnt-in texts, drawn once: white with a dark rim, readable on any ground. Latin letters only.
class Lettering
{
public:
    // The first call makes the letters and needs a QGuiApplication, on its thread; later calls may come from
    // any.
    static const Lettering& Instance();

    // Width of the text in pixels.
    int Width(const std::string& text) const;
    int Height() const { return height_; }
    // left and top are those of the text's box.
    void Draw(QPainter& painter, int left, int top, const std::string& text) const;
    // The text in black, scaled into a box.
    void DrawPlain(QPainter& painter, const QRectF& box, const std::string& text) const;

private:
    struct Letter
    {
        QImage rimmed;
        QImage plain;
        int advance = 0;
    };
    static constexpr int kFirst = 32;
    static constexpr int kCount = 224;  // up to U+00FF

    Lettering();
    const Letter& At(QChar letter) const;

    std::array<Letter, kCount> letters_;
    int height_ = 0;
};

}  // namespace Station
