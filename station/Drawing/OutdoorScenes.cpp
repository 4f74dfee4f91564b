#include "station/Drawing/OutdoorScenes.h"

#include "station/Drawing/Figures.h"
#include "station/Random.h"

#include <QLinearGradient>
#include <QPainterPath>
#include <QRadialGradient>

namespace Station {
namespace {

constexpr double kWidth = kPictureWidth;
constexpr double kHeight = kPictureHeight;

// Day colours, darkened by the hour.
QColor Lit(const QColor& colour, Light light)
{
    return light == Light::Day ? colour : light == Light::Dusk ? colour.darker(155) : colour.darker(230);
}

void FillDown(QPainter& painter, const QRectF& area, const QColor& top, const QColor& bottom)
{
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    painter.fillRect(area, gradient);
}

void DrawSky(QPainter& painter, Random& random, Light light, double horizon)
{
    const QRectF sky(0, 0, kWidth, horizon + 1);
    if (light == Light::Day)
        FillDown(painter, sky, QColor(96, 150, 205), QColor(205, 222, 235));
    else if (light == Light::Dusk)
        FillDown(painter, sky, QColor(58, 70, 110), QColor(232, 160, 110));
    else
        FillDown(painter, sky, QColor(8, 10, 18), QColor(34, 38, 48));
    const int alpha = light == Light::Day ? 70 : 22;
    for (int cloud = 0; cloud < 7; ++cloud) {
        const double x = random.Below(kPictureWidth);
        const double y = 30 + random.Below(150);
        for (int puff = 0; puff < 5; ++puff) {
            painter.setBrush(QColor(255, 255, 255, alpha / 2 + random.Below(alpha)));
            painter.drawEllipse(QPointF(x + puff * 34 - 68, y + random.Below(18)), 50 + random.Below(46),
                                12 + random.Below(14));
        }
    }
}

void DrawWindows(QPainter& painter, Random& random, const QRectF& wall, Light light, double step)
{
    // NOLINTBEGIN(clang-analyzer-security.FloatLoopCounter): a window more or less is no matter
    for (double y = wall.top() + step * 0.6; y < wall.bottom() - step; y += step)
        for (double x = wall.left() + step * 0.4; x < wall.right() - step * 0.6; x += step * 0.9) {
            const bool is_lit = light != Light::Day && random.OneIn(3);
            painter.setBrush(is_lit ? QColor(250, 224, 150) : Lit(QColor(92, 112, 134), light));
            painter.drawRect(QRectF(x, y, step * 0.45, step * 0.55));
        }
    // NOLINTEND(clang-analyzer-security.FloatLoopCounter)
}

void DrawSkyline(QPainter& painter, Random& random, Light light, double horizon)
{
    double x = -20;
    while (x < kWidth) {
        const double width = 90 + random.Below(120);
        const double height = 70 + random.Below(190);
        const int shade = 120 + random.Below(70);
        const QRectF wall(x, horizon - height, width, height + 4);
        const QColor colour = Lit(QColor(shade, shade - 6 - random.Below(14), shade - 18), light);
        FillDown(painter, wall, colour.lighter(112), colour.darker(112));
        DrawWindows(painter, random, wall, light, 22 + random.Below(9));
        x += width + random.Below(26);
    }
}

void DrawTree(QPainter& painter, Random& random, Light light, double x, double ground, double size)
{
    painter.setBrush(Lit(QColor(86, 66, 48), light));
    painter.drawRect(QRectF(x - size * 0.05, ground - size * 0.45, size * 0.1, size * 0.45));
    for (int leaf = 0; leaf < 16; ++leaf) {
        const int green = 92 + random.Below(58);
        painter.setBrush(Lit(QColor(50 + random.Below(30), green, 46), light));
        painter.drawEllipse(QPointF(x + (random.Fraction() - 0.5) * size * 0.62,
                                    ground - size * (0.45 + random.Fraction() * 0.5)),
                            size * 0.17, size * 0.14);
    }
}

void DrawLamp(QPainter& painter, Light light, double x, double ground, double height)
{
    painter.setBrush(Lit(QColor(88, 92, 96), light));
    painter.drawRect(QRectF(x - height * 0.012, ground - height, height * 0.024, height));
    painter.drawRect(QRectF(x, ground - height, height * 0.2, height * 0.018));
    if (light == Light::Day)
        return;
    QRadialGradient glow(x + height * 0.19, ground - height * 0.98, height * 0.55);
    glow.setColorAt(0, QColor(255, 232, 170, 190));
    glow.setColorAt(1, QColor(255, 232, 170, 0));
    painter.setBrush(glow);
    painter.drawEllipse(QPointF(x + height * 0.19, ground - height * 0.98), height * 0.55, height * 0.55);
}

void DrawPolygon(QPainter& painter, std::initializer_list<QPointF> points, const QBrush& brush)
{
    painter.setBrush(brush);
    painter.drawPolygon(QPolygonF(QVector<QPointF>(points)));
}

}  // namespace

void DrawStreet(QPainter& painter, std::uint64_t seed, Light light)
{
    Random random(seed);
    constexpr double kHorizon = 330;
    DrawSky(painter, random, light, kHorizon);
    DrawSkyline(painter, random, light, kHorizon);
    FillDown(painter, QRectF(0, kHorizon, kWidth, kHeight - kHorizon), Lit(QColor(150, 148, 142), light),
             Lit(QColor(172, 168, 160), light));
    const double vanish = 560 + random.Below(160);
    QLinearGradient asphalt(0, kHorizon, 0, kHeight);
    asphalt.setColorAt(0, Lit(QColor(104, 106, 110), light));
    asphalt.setColorAt(1, Lit(QColor(66, 68, 72), light));
    DrawPolygon(painter, {{vanish - 30, kHorizon}, {vanish + 30, kHorizon}, {1180, kHeight}, {100, kHeight}},
                asphalt);
    for (const double side : {-1.0, 1.0}) {
        const double foot = side < 0 ? 100 : 1180;
        DrawPolygon(painter,
                    {{vanish + side * 30, kHorizon},
                     {vanish + side * 33, kHorizon},
                     {foot + side * 34, kHeight},
                     {foot, kHeight}},
                    Lit(QColor(208, 204, 196), light));
    }
    for (int dash = 0; dash < 7; ++dash) {
        const double front = 1.0 - dash * 0.14;
        const double back = front - 0.075;
        const auto at = [&](double t, double offset) {
            const double depth = t * t;
            return QPointF(vanish + (640 - vanish) * depth + offset * depth,
                           kHorizon + (kHeight - kHorizon) * depth);
        };
        DrawPolygon(painter, {at(front, -11), at(front, 11), at(back, 11), at(back, -11)},
                    Lit(QColor(232, 230, 220), light));
    }
    for (int tree = 0; tree < 4; ++tree)
        DrawTree(painter, random, light, 40 + random.Below(60) + tree * 110.0, 380 + (3 - tree) * 26,
                 (3 - tree) * 42.0 + 90);
    DrawLamp(painter, light, 1010, 470, 300);
    DrawLamp(painter, light, 860, 392, 150);
}

void DrawParking(QPainter& painter, std::uint64_t seed, Light light)
{
    Random random(seed);
    constexpr double kHorizon = 340;
    DrawSky(painter, random, light, kHorizon);
    const QRectF house(120, 110, 1040, kHorizon - 100);
    const int shade = 168 + random.Below(40);
    FillDown(painter, house, Lit(QColor(shade, shade - 8, shade - 22), light),
             Lit(QColor(shade - 34, shade - 40, shade - 50), light));
    DrawWindows(painter, random, QRectF(house.left(), house.top(), house.width(), house.height() - 70), light,
                52);
    painter.setBrush(Lit(QColor(70, 82, 96), light));
    painter.drawRect(QRectF(590, 262, 110, 90));
    painter.setBrush(Lit(QColor(132, 40, 40), light));
    painter.drawRect(QRectF(560, 246, 170, 16));
    FillDown(painter, QRectF(0, kHorizon, kWidth, kHeight - kHorizon), Lit(QColor(122, 124, 126), light),
             Lit(QColor(78, 80, 84), light));
    for (int bay = -8; bay <= 8; ++bay) {
        const double back = 640 + bay * 74.0;
        const double front = 640 + bay * 190.0;
        DrawPolygon(painter,
                    {{back - 1.5, kHorizon + 18},
                     {back + 1.5, kHorizon + 18},
                     {back + (front - back) * 0.34 + 3, 470},
                     {back + (front - back) * 0.34 - 3, 470}},
                    Lit(QColor(226, 226, 214), light));
    }
    for (int bay = -6; bay < 6; ++bay)
        if (!random.OneIn(3))
            DrawCar(painter, {640 + bay * 92.0 + 46, 432.0}, 62, random.Next(), light, "");
    DrawTree(painter, random, light, 60, 400, 190);
    DrawTree(painter, random, light, 1220, 404, 210);
    DrawLamp(painter, light, 300, 440, 320);
    DrawLamp(painter, light, 1040, 440, 320);
}

void DrawFence(QPainter& painter, std::uint64_t seed, Light light)
{
    Random random(seed);
    constexpr double kHorizon = 320;
    DrawSky(painter, random, light, kHorizon);
    for (int tree = 0; tree < 34; ++tree)
        DrawTree(painter, random, light, tree * 40.0 + random.Below(30), kHorizon + 10,
                 90 + random.Below(80));
    FillDown(painter, QRectF(0, kHorizon, kWidth, kHeight - kHorizon), Lit(QColor(116, 132, 84), light),
             Lit(QColor(82, 104, 58), light));
    for (int blade = 0; blade < 1500; ++blade) {
        const double t = random.Fraction();
        painter.setBrush(Lit(QColor(70 + random.Below(50), 100 + random.Below(46), 48), light));
        painter.drawRect(
            QRectF(random.Below(kPictureWidth), kHorizon + t * (kHeight - kHorizon), 1.5, 3 + t * 9));
    }
    QLinearGradient gravel(0, kHorizon, 0, kHeight);
    gravel.setColorAt(0, Lit(QColor(176, 166, 148), light));
    gravel.setColorAt(1, Lit(QColor(150, 140, 122), light));
    DrawPolygon(painter, {{700, kHorizon}, {722, kHorizon}, {1130, kHeight}, {640, kHeight}}, gravel);
    const double tilt = 20 + random.Below(60);
    painter.setPen(QPen(Lit(QColor(170, 176, 182, 170), light), 1.2));
    for (int mesh = 0; mesh < 90; ++mesh) {
        const double x = mesh * 16.0 - 80;
        painter.drawLine(QPointF(x, 250 + tilt * x / kWidth), QPointF(x + 60, 470 + tilt * 2 * x / kWidth));
        painter.drawLine(QPointF(x + 60, 250 + tilt * x / kWidth), QPointF(x, 470 + tilt * 2 * x / kWidth));
    }
    painter.setPen(Qt::NoPen);
    for (int post = 0; post < 9; ++post) {
        const double x = 20 + post * 155.0;
        painter.setBrush(Lit(QColor(120, 126, 132), light));
        painter.drawRect(QRectF(x, 238 + tilt * x / kWidth, 9, 240 + tilt * x / kWidth));
    }
    for (int wire = 0; wire < 3; ++wire)
        DrawPolygon(painter,
                    {{0, 240.0 + wire * 9},
                     {kWidth, 240.0 + wire * 9 + tilt},
                     {kWidth, 242.0 + wire * 9 + tilt},
                     {0, 242.0 + wire * 9}},
                    Lit(QColor(98, 104, 110), light));
    DrawLamp(painter, light, 1180, 430, 330);
}

}  // namespace Station
