#include "station/Drawing/Figures.h"

#include "station/Drawing/Lettering.h"
#include "station/Random.h"

#include <QLinearGradient>
#include <QPainterPath>
#include <QRadialGradient>

#include <array>

namespace Station {
namespace {

QColor Lit(const QColor& colour, Light light)
{
    if (light == Light::Day)
        return colour;
    if (light == Light::Dusk)
        return colour.darker(135);
    const int grey = qGray(colour.rgb()) * 3 / 4 + 40;
    return {grey, grey, grey};
}

void DrawShadow(QPainter& painter, const QPointF& foot, double width, double height)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 80));
    painter.drawEllipse(foot, width, height);
}

void DrawLimb(QPainter& painter, const QPointF& from, const QPointF& to, double thickness,
              const QColor& colour)
{
    painter.setPen(QPen(colour, thickness, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(from, to);
    painter.setPen(Qt::NoPen);
}

}  // namespace

QRectF DrawPerson(QPainter& painter, const QPointF& foot, double height, std::uint64_t seed, Light light)
{
    constexpr std::array<QRgb, 8> kCoats = {0xff2f4858, 0xff8c2f39, 0xff3b5d3a, 0xff444444,
                                            0xffd9822b, 0xff5b4a72, 0xffb8b08d, 0xff1f6f8b};
    constexpr std::array<QRgb, 4> kTrousers = {0xff23262b, 0xff3a4660, 0xff5a5147, 0xff2e3b2e};
    constexpr std::array<QRgb, 5> kSkins = {0xfff0c8a0, 0xffd9a679, 0xffa8744a, 0xff7a4e30, 0xffe8b894};
    constexpr std::array<QRgb, 4> kHairs = {0xff2b1d14, 0xff5a3b22, 0xff8a8680, 0xff151515};
    Random random(seed);
    const QColor coat = Lit(QColor(random.Pick(kCoats)), light);
    const QColor trousers = Lit(QColor(random.Pick(kTrousers)), light);
    const QColor skin = Lit(QColor(random.Pick(kSkins)), light);
    const QColor hair = Lit(QColor(random.Pick(kHairs)), light);
    const double stride = (random.Fraction() - 0.5) * 0.26 * height;
    const double h = height;
    const QPointF hip = foot + QPointF(0, -0.47 * h);
    const QPointF shoulder = foot + QPointF(0, -0.8 * h);

    DrawShadow(painter, foot, 0.2 * h, 0.035 * h);
    DrawLimb(painter, hip + QPointF(0.035 * h, 0), foot + QPointF(stride * 0.6, -0.03 * h), 0.085 * h,
             trousers);
    DrawLimb(painter, hip - QPointF(0.035 * h, 0), foot - QPointF(stride * 0.6, 0.02 * h), 0.085 * h,
             trousers.darker(115));
    DrawLimb(painter, shoulder - QPointF(0.1 * h, -0.03 * h), hip + QPointF(-0.13 * h + stride * 0.4, 0),
             0.06 * h, coat.darker(118));
    QPainterPath body;
    body.moveTo(shoulder + QPointF(-0.115 * h, 0.01 * h));
    body.quadTo(shoulder + QPointF(0, -0.045 * h), shoulder + QPointF(0.115 * h, 0.01 * h));
    body.lineTo(hip + QPointF(0.09 * h, 0.04 * h));
    body.lineTo(hip + QPointF(-0.09 * h, 0.04 * h));
    body.closeSubpath();
    QLinearGradient cloth(shoulder - QPointF(0.12 * h, 0), shoulder + QPointF(0.12 * h, 0));
    cloth.setColorAt(0, coat.darker(118));
    cloth.setColorAt(1, coat.lighter(112));
    painter.setBrush(cloth);
    painter.drawPath(body);
    DrawLimb(painter, shoulder + QPointF(0.1 * h, 0.03 * h), hip + QPointF(0.13 * h - stride * 0.4, 0),
             0.06 * h, coat);
    painter.setBrush(skin);
    painter.drawRect(QRectF(shoulder.x() - 0.025 * h, shoulder.y() - 0.05 * h, 0.05 * h, 0.06 * h));
    painter.drawEllipse(shoulder + QPointF(0, -0.105 * h), 0.056 * h, 0.075 * h);
    painter.setBrush(hair);
    painter.drawChord(QRectF(shoulder.x() - 0.061 * h, shoulder.y() - 0.19 * h, 0.122 * h, 0.13 * h), 0,
                      180 * 16);
    return {foot.x() - 0.2 * h, foot.y() - 1.02 * h, 0.4 * h, 1.05 * h};
}

QRectF DrawCar(QPainter& painter, const QPointF& foot, double height, std::uint64_t seed, Light light,
               const std::string& plate)
{
    constexpr std::array<QRgb, 8> kPaints = {0xffb02a30, 0xff2d4f7c, 0xffd8d8d4, 0xff23262a,
                                             0xff7d8288, 0xff2f5d46, 0xffc9a227, 0xffeeeeee};
    Random random(seed);
    const QColor paint = Lit(QColor(random.Pick(kPaints)), light);
    const double h = height;
    const double w = 1.22 * h;
    const auto box = [&](double left, double top, double right, double bottom) {
        return QRectF(QPointF(foot.x() + left * w, foot.y() - top * h),
                      QPointF(foot.x() + right * w, foot.y() - bottom * h));
    };
    DrawShadow(painter, foot, 0.58 * w, 0.08 * h);
    painter.setBrush(QColor(22, 22, 24));
    painter.drawRoundedRect(box(-0.46, 0.24, -0.3, -0.02), 4, 4);
    painter.drawRoundedRect(box(0.3, 0.24, 0.46, -0.02), 4, 4);
    QPainterPath cabin;
    cabin.moveTo(foot + QPointF(-0.42 * w, -0.56 * h));
    cabin.lineTo(foot + QPointF(-0.3 * w, -0.95 * h));
    cabin.quadTo(foot + QPointF(0, -1.05 * h), foot + QPointF(0.3 * w, -0.95 * h));
    cabin.lineTo(foot + QPointF(0.42 * w, -0.56 * h));
    cabin.closeSubpath();
    painter.setBrush(paint.darker(115));
    painter.drawPath(cabin);
    QPainterPath glass;
    glass.moveTo(foot + QPointF(-0.36 * w, -0.58 * h));
    glass.lineTo(foot + QPointF(-0.26 * w, -0.91 * h));
    glass.quadTo(foot + QPointF(0, -0.97 * h), foot + QPointF(0.26 * w, -0.91 * h));
    glass.lineTo(foot + QPointF(0.36 * w, -0.58 * h));
    glass.closeSubpath();
    QLinearGradient pane(foot + QPointF(0, -0.95 * h), foot + QPointF(0, -0.55 * h));
    pane.setColorAt(0, QColor(150, 172, 190));
    pane.setColorAt(1, QColor(44, 54, 64));
    painter.setBrush(pane);
    painter.drawPath(glass);
    QLinearGradient hood(foot + QPointF(0, -0.6 * h), foot + QPointF(0, -0.1 * h));
    hood.setColorAt(0, paint.lighter(122));
    hood.setColorAt(1, paint.darker(130));
    painter.setBrush(hood);
    painter.drawRoundedRect(box(-0.5, 0.6, 0.5, 0.1), 0.09 * h, 0.09 * h);
    painter.setBrush(QColor(28, 30, 34));
    painter.drawRoundedRect(box(-0.22, 0.42, 0.22, 0.28), 3, 3);
    painter.setBrush(light == Light::Day ? QColor(240, 240, 226) : QColor(255, 250, 214));
    painter.drawEllipse(box(-0.47, 0.47, -0.3, 0.33));
    painter.drawEllipse(box(0.3, 0.47, 0.47, 0.33));
    if (!plate.empty()) {
        const QRectF sign = box(-0.2, 0.245, 0.2, 0.125);
        painter.setBrush(QColor(246, 246, 240));
        painter.drawRect(sign);
        Lettering::Instance().DrawPlain(painter, sign, plate);
    }
    return {foot.x() - 0.56 * w, foot.y() - 1.04 * h, 1.12 * w, 1.1 * h};
}

QRectF DrawFire(QPainter& painter, const QPointF& foot, double height, std::uint64_t seed)
{
    Random random(seed);
    painter.setPen(Qt::NoPen);
    for (int puff = 0; puff < 26; ++puff) {
        const double up = puff / 26.0;
        const int grey = 60 + random.Below(50);
        painter.setBrush(QColor(grey, grey, grey, static_cast<int>(110 * (1 - up)) + 14));
        const double size = height * (0.18 + up * 0.34);
        painter.drawEllipse(
            foot + QPointF((random.Fraction() - 0.4) * height * (0.5 + up), -height * (0.7 + up * 1.3)), size,
            size * 0.8);
    }
    QRadialGradient glow(foot + QPointF(0, -height * 0.35), height * 1.2);
    glow.setColorAt(0, QColor(255, 170, 60, 150));
    glow.setColorAt(1, QColor(255, 120, 20, 0));
    painter.setBrush(glow);
    painter.drawEllipse(foot + QPointF(0, -height * 0.35), height * 1.2, height * 0.9);
    constexpr std::array<QRgb, 3> kFlames = {0xffd9431e, 0xfff58a1f, 0xffffe08a};
    for (int layer = 0; layer < 3; ++layer)
        for (int tongue = 0; tongue < 5; ++tongue) {
            const double width = height * (0.2 - layer * 0.05);
            const double tall = height * (0.95 - layer * 0.27) * (0.6 + random.Fraction() * 0.4);
            const QPointF base = foot + QPointF((tongue - 2) * height * (0.15 - layer * 0.03), 0);
            QPainterPath flame;
            flame.moveTo(base - QPointF(width, 0));
            flame.quadTo(base + QPointF(-width, -tall * 0.5),
                         base + QPointF((random.Fraction() - 0.5) * width, -tall));
            flame.quadTo(base + QPointF(width, -tall * 0.4), base + QPointF(width, 0));
            flame.closeSubpath();
            painter.setBrush(QColor(kFlames[static_cast<std::size_t>(layer)]));
            painter.drawPath(flame);
        }
    return {foot.x() - height * 0.6, foot.y() - height * 1.05, height * 1.2, height * 1.1};
}

QRectF DrawBag(QPainter& painter, const QPointF& foot, double height, std::uint64_t seed)
{
    Random random(seed);
    const QColor colour = QColor::fromHsv(random.Below(360), 120, 110);
    DrawShadow(painter, foot, height * 0.8, height * 0.12);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour.darker(160), height * 0.07));
    painter.drawArc(QRectF(foot.x() - height * 0.25, foot.y() - height * 1.0, height * 0.5, height * 0.6), 0,
                    180 * 16);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(
        QRectF(foot.x() - height * 0.65, foot.y() - height * 0.72, height * 1.3, height * 0.74),
        height * 0.16, height * 0.16);
    painter.setBrush(colour.darker(140));
    painter.drawRect(QRectF(foot.x() - height * 0.65, foot.y() - height * 0.48, height * 1.3, height * 0.06));
    return {foot.x() - height * 0.75, foot.y() - height * 1.1, height * 1.5, height * 1.2};
}

}  // namespace Station
