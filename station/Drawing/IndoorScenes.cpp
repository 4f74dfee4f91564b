#include "station/Drawing/IndoorScenes.h"

#include "station/Random.h"

#include <QLinearGradient>
#include <QRadialGradient>

#include <array>

namespace Station {
namespace {

constexpr double kWidth = kPictureWidth;
constexpr double kHeight = kPictureHeight;

// A room seen from its front: the back wall, and the four edges that run to the picture's corners.
struct Room
{
    QRectF back;
    QColor wall;
    QColor floor;
    QColor ceiling;
};

QLinearGradient Between(const QPointF& from, const QPointF& to, const QColor& first, const QColor& second)
{
    QLinearGradient gradient(from, to);
    gradient.setColorAt(0, first);
    gradient.setColorAt(1, second);
    return gradient;
}

void DrawPolygon(QPainter& painter, std::initializer_list<QPointF> points, const QBrush& brush)
{
    painter.setBrush(brush);
    painter.drawPolygon(QPolygonF(QVector<QPointF>(points)));
}

void DrawShell(QPainter& painter, const Room& room)
{
    const QRectF& back = room.back;
    DrawPolygon(painter, {{0, 0}, {kWidth, 0}, back.topRight(), back.topLeft()},
                Between({0, 0}, {0, back.top()}, room.ceiling, room.ceiling.darker(118)));
    DrawPolygon(painter, {{0, kHeight}, {kWidth, kHeight}, back.bottomRight(), back.bottomLeft()},
                Between({0, back.bottom()}, {0, kHeight}, room.floor.darker(122), room.floor));
    DrawPolygon(painter, {{0, 0}, back.topLeft(), back.bottomLeft(), {0, kHeight}},
                Between({0, 0}, {back.left(), 0}, room.wall, room.wall.darker(126)));
    DrawPolygon(painter, {{kWidth, 0}, back.topRight(), back.bottomRight(), {kWidth, kHeight}},
                Between({kWidth, 0}, {back.right(), 0}, room.wall.darker(104), room.wall.darker(132)));
    painter.fillRect(
        back, Between(back.topLeft(), back.bottomLeft(), room.wall.darker(108), room.wall.darker(120)));
}

// The point of the floor at a fraction across, and at a depth from 0 (back) to 1 (front).
QPointF OnFloor(const Room& room, double across, double depth)
{
    const double left = room.back.left() * (1 - depth);
    const double right = room.back.right() + (kWidth - room.back.right()) * depth;
    return {left + (right - left) * across, room.back.bottom() + (kHeight - room.back.bottom()) * depth};
}

QPointF OnCeiling(const Room& room, double across, double depth)
{
    const double left = room.back.left() * (1 - depth);
    const double right = room.back.right() + (kWidth - room.back.right()) * depth;
    return {left + (right - left) * across, room.back.top() * (1 - depth)};
}

// Rows of equal tiles come closer together with the distance.
double TileDepth(int row, int rows)
{
    const double step = static_cast<double>(row) / rows;
    return step / (step + (1 - step) * 5);
}

void DrawTiles(QPainter& painter, const Room& room, int columns, int rows)
{
    for (int row = 0; row < rows; ++row)
        for (int column = row % 2; column < columns; column += 2) {
            const double back = TileDepth(row, rows);
            const double front = TileDepth(row + 1, rows);
            const double left = static_cast<double>(column) / columns;
            const double right = (column + 1.0) / columns;
            DrawPolygon(painter,
                        {OnFloor(room, left, back), OnFloor(room, right, back), OnFloor(room, right, front),
                         OnFloor(room, left, front)},
                        QColor(0, 0, 0, 20));
        }
}

void DrawLights(QPainter& painter, const Room& room, double from, double to, int count)
{
    for (int panel = 0; panel < count; ++panel) {
        const double back = 0.06 + panel * 0.9 / count;
        const double front = back + 0.4 / count;
        DrawPolygon(painter,
                    {OnCeiling(room, from, back), OnCeiling(room, to, back), OnCeiling(room, to, front),
                     OnCeiling(room, from, front)},
                    QColor(255, 255, 246, 235));
        const QPointF shine = OnFloor(room, (from + to) / 2, back);
        QRadialGradient glow(shine, 150);
        glow.setColorAt(0, QColor(255, 255, 250, 46));
        glow.setColorAt(1, QColor(255, 255, 250, 0));
        painter.setBrush(glow);
        painter.drawEllipse(shine, 220, 60);
    }
}

// A door in one of the side walls, between two depths.
void DrawSideDoor(QPainter& painter, const Room& room, bool is_left, double back, double front,
                  const QColor& colour)
{
    const double across = is_left ? 0 : 1;
    const QPointF back_foot = OnFloor(room, across, back);
    const QPointF front_foot = OnFloor(room, across, front);
    const QPointF back_top = back_foot + (OnCeiling(room, across, back) - back_foot) * 0.72;
    const QPointF front_top = front_foot + (OnCeiling(room, across, front) - front_foot) * 0.72;
    DrawPolygon(painter, {back_foot, front_foot, front_top, back_top}, colour);
    const QPointF middle = front_foot * 0.85 + back_foot * 0.15;
    painter.setBrush(QColor(214, 214, 208));
    painter.drawEllipse(middle + (front_top - front_foot) * 0.45, 4, 4);
}

void DrawPlant(QPainter& painter, Random& random, double x, double ground, double size)
{
    painter.setBrush(QColor(150, 92, 66));
    painter.drawRect(QRectF(x - size * 0.16, ground - size * 0.3, size * 0.32, size * 0.3));
    for (int leaf = 0; leaf < 14; ++leaf) {
        painter.setBrush(QColor(40 + random.Below(30), 96 + random.Below(50), 52));
        painter.drawEllipse(QPointF(x + (random.Fraction() - 0.5) * size * 0.6,
                                    ground - size * (0.35 + random.Fraction() * 0.6)),
                            size * 0.1, size * 0.16);
    }
}

void DrawShelves(QPainter& painter, const Room& room, Random& random, bool is_left)
{
    constexpr int kBays = 7;
    constexpr int kBoards = 4;
    constexpr std::array<QRgb, 6> kBoxes = {0xffb08a5a, 0xffa07848, 0xff8f9aa6,
                                            0xff5f7fa8, 0xffc2a26a, 0xff9c5c4c};
    const double across = is_left ? 0.02 : 0.98;
    for (int bay = 0; bay < kBays; ++bay) {
        const double back = TileDepth(bay, kBays) + 0.004;
        const double front = TileDepth(bay + 1, kBays) - 0.004;
        const QPointF back_foot = OnFloor(room, across, back);
        const QPointF front_foot = OnFloor(room, across, front);
        const QPointF back_top = back_foot + (OnCeiling(room, across, back) - back_foot) * 0.86;
        const QPointF front_top = front_foot + (OnCeiling(room, across, front) - front_foot) * 0.86;
        const auto at = [&](double along, double up) {
            const QPointF foot = back_foot + (front_foot - back_foot) * along;
            const QPointF top = back_top + (front_top - back_top) * along;
            return foot + (top - foot) * up;
        };
        for (int board = 0; board < kBoards; ++board)
            for (int box = 0; box < 3; ++box) {
                if (random.OneIn(6))
                    continue;
                const double low = static_cast<double>(board) / kBoards + 0.02;
                const double high = low + 0.12 + random.Fraction() * 0.08;
                const QColor colour(random.Pick(kBoxes));
                DrawPolygon(painter,
                            {at(box * 0.33 + 0.02, low), at(box * 0.33 + 0.3, low),
                             at(box * 0.33 + 0.3, high), at(box * 0.33 + 0.02, high)},
                            is_left ? colour : colour.darker(112));
            }
        for (int board = 0; board <= kBoards; ++board) {
            const double up = static_cast<double>(board) / kBoards;
            DrawPolygon(painter, {at(0, up), at(1, up), at(1, up + 0.02), at(0, up + 0.02)},
                        QColor(214, 104, 38));
        }
        DrawPolygon(painter, {at(0, 0), at(0.05, 0), at(0.05, 1.02), at(0, 1.02)}, QColor(44, 74, 128));
    }
}

}  // namespace

void DrawCorridor(QPainter& painter, std::uint64_t seed, Light)
{
    Random random(seed);
    const int tone = 196 + random.Below(24);
    const Room room{{500, 205, 280, 195},
                    QColor(tone, tone - 4, tone - 14),
                    QColor(150, 148, 150),
                    QColor(222, 222, 218)};
    DrawShell(painter, room);
    DrawTiles(painter, room, 8, 12);
    DrawLights(painter, room, 0.42, 0.58, 5);
    constexpr std::array<QRgb, 4> kDoors = {0xff7a5638, 0xff4e6a80, 0xff86785e, 0xff5c6f5a};
    const QColor door(random.Pick(kDoors));
    for (const bool is_left : {true, false})
        for (const double back : {0.05, 0.2, 0.48})
            DrawSideDoor(painter, room, is_left, back, back + back * 0.6 + 0.04,
                         is_left ? door : door.darker(116));
    painter.fillRect(QRectF(590, 270, 100, 130), QColor(96, 108, 120));
    painter.fillRect(QRectF(639, 270, 2, 130), QColor(52, 58, 66));
    painter.fillRect(QRectF(612, 222, 56, 24), QColor(30, 140, 70));
}

void DrawHall(QPainter& painter, std::uint64_t seed, Light)
{
    Random random(seed);
    const Room room{
        {210, 130, 860, 250}, QColor(216, 208, 196), QColor(178, 170, 160), QColor(232, 230, 226)};
    DrawShell(painter, room);
    DrawTiles(painter, room, 14, 12);
    for (int window = 0; window < 6; ++window) {
        const QRectF glass(240 + window * 136.0, 156, 116, 150);
        painter.fillRect(glass, Between(glass.topLeft(), glass.bottomLeft(), QColor(170, 204, 232),
                                        QColor(226, 236, 240)));
        painter.fillRect(QRectF(glass.center().x() - 2, glass.top(), 4, glass.height()),
                         QColor(104, 108, 112));
        const QPointF shine = OnFloor(room, (glass.center().x() - 210) / 860, 0.2);
        QRadialGradient glow(shine, 120);
        glow.setColorAt(0, QColor(255, 255, 255, 60));
        glow.setColorAt(1, QColor(255, 255, 255, 0));
        painter.setBrush(glow);
        painter.drawEllipse(shine, 90, 120);
    }
    DrawLights(painter, room, 0.2, 0.32, 4);
    DrawLights(painter, room, 0.68, 0.8, 4);
    const double desk = 300 + random.Below(420);
    painter.fillRect(QRectF(desk, 350, 260, 74),
                     Between({desk, 350}, {desk, 424}, QColor(140, 100, 66), QColor(96, 66, 42)));
    painter.fillRect(QRectF(desk - 8, 340, 276, 14), QColor(72, 74, 80));
    painter.fillRect(QRectF(desk + 60, 300, 62, 42), QColor(34, 36, 42));
    for (const double x : {70.0, 1210.0})
        painter.fillRect(QRectF(x - 34, 0, 68, 640),
                         Between({x - 34, 0}, {x + 34, 0}, QColor(226, 222, 216), QColor(158, 152, 146)));
    DrawPlant(painter, random, 170, 520, 170);
    DrawPlant(painter, random, 1120, 500, 150);
}

void DrawWarehouse(QPainter& painter, std::uint64_t seed, Light)
{
    Random random(seed);
    const Room room{{520, 190, 240, 180}, QColor(132, 138, 144), QColor(128, 128, 126), QColor(86, 92, 100)};
    DrawShell(painter, room);
    for (int beam = 0; beam < 9; ++beam) {
        const double depth = TileDepth(beam, 9);
        DrawPolygon(painter,
                    {OnCeiling(room, 0, depth), OnCeiling(room, 1, depth),
                     OnCeiling(room, 1, depth * 1.05 + 0.004), OnCeiling(room, 0, depth * 1.05 + 0.004)},
                    QColor(56, 60, 66));
    }
    DrawLights(painter, room, 0.3, 0.36, 5);
    DrawLights(painter, room, 0.64, 0.7, 5);
    for (const double across : {0.27, 0.73})
        DrawPolygon(painter,
                    {OnFloor(room, across - 0.006, 0), OnFloor(room, across + 0.006, 0),
                     OnFloor(room, across + 0.006, 1), OnFloor(room, across - 0.006, 1)},
                    QColor(226, 190, 46));
    DrawShelves(painter, room, random, true);
    DrawShelves(painter, room, random, false);
    painter.fillRect(QRectF(596, 262, 88, 108), QColor(70, 84, 98));
    for (int slat = 0; slat < 9; ++slat)
        painter.fillRect(QRectF(596, 262 + slat * 12.0, 88, 2), QColor(50, 60, 70));
}

}  // namespace Station
