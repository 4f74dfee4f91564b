#include "Window/Icons.h"

#include <QIconEngine>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <array>
#include <functional>
#include <initializer_list>
#include <utility>

namespace FetchyardClient {

namespace {

// Draws in a square of 16 by 16 units, at whatever size and scale is asked for.
class DrawnIcon final : public QIconEngine
{
public:
    using Draw = std::function<void(QPainter&)>;

    explicit DrawnIcon(Draw draw) : draw_(std::move(draw)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (mode == QIcon::Disabled)
            painter->setOpacity(0.35);
        const int side = qMin(rect.width(), rect.height());
        painter->translate(rect.x() + (rect.width() - side) / 2.0, rect.y() + (rect.height() - side) / 2.0);
        painter->scale(side / 16.0, side / 16.0);
        draw_(*painter);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return picture;
    }

    QIconEngine* clone() const override { return new DrawnIcon(draw_); }

private:
    Draw draw_;
};

QPen Pen(const QColor& colour, qreal width)
{
    return QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

QPolygonF Polygon(std::initializer_list<QPointF> corners)
{
    return QPolygonF(QVector<QPointF>(corners));
}

void DrawStateSign(QPainter& painter, RowState state)
{
    switch (state) {
        case RowState::Waiting:
            painter.drawLine(QPointF(8, 4.5), QPointF(8, 8));
            painter.drawLine(QPointF(8, 8), QPointF(10.5, 9.5));
            break;
        case RowState::Running:
            painter.drawPolyline(Polygon({{8, 4.5}, {8, 11}}));
            painter.drawPolyline(Polygon({{5.2, 8.4}, {8, 11.2}, {10.8, 8.4}}));
            break;
        case RowState::Finished:
            painter.drawPolyline(Polygon({{4.8, 8.2}, {7, 10.5}, {11.2, 5.8}}));
            break;
        case RowState::Failed:
            painter.drawLine(QPointF(5.6, 5.6), QPointF(10.4, 10.4));
            painter.drawLine(QPointF(10.4, 5.6), QPointF(5.6, 10.4));
            break;
        case RowState::Stopped:
            painter.fillRect(QRectF(5.5, 5.5, 5, 5), painter.pen().color());
            break;
        case RowState::Interrupted:
            painter.drawLine(QPointF(8, 4.4), QPointF(8, 8.6));
            painter.drawPoint(QPointF(8, 11.3));
            break;
        case RowState::Deleted:
            painter.drawLine(QPointF(5, 8), QPointF(11, 8));
            break;
    }
}

void DrawSheet(QPainter& painter)
{
    painter.drawPolygon(Polygon({{3.5, 1.5}, {9.5, 1.5}, {12.5, 4.5}, {12.5, 14.5}, {3.5, 14.5}}));
}

void DrawArc(QPainter& painter, bool to_the_left)
{
    QPainterPath path;
    path.arcMoveTo(3, 3, 10, 10, to_the_left ? 130 : 50);
    path.arcTo(3, 3, 10, 10, to_the_left ? 130 : 50, to_the_left ? -290 : 290);
    painter.drawPath(path);
    if (to_the_left)
        painter.drawPolyline(Polygon({{4.4, 1}, {4.4, 4.6}, {8, 4.6}}));
    else
        painter.drawPolyline(Polygon({{11.6, 1}, {11.6, 4.6}, {8, 4.6}}));
}

void DrawBin(QPainter& painter)
{
    painter.drawLine(QPointF(2.5, 4), QPointF(13.5, 4));
    painter.drawPolyline(Polygon({{6, 4}, {6, 2}, {10, 2}, {10, 4}}));
    painter.drawPolyline(Polygon({{4, 4}, {4.7, 14}, {11.3, 14}, {12, 4}}));
    painter.drawLine(QPointF(6.7, 6.8), QPointF(7, 11.4));
    painter.drawLine(QPointF(9.3, 6.8), QPointF(9, 11.4));
}

void DrawFailedFiles(QPainter& painter)
{
    DrawSheet(painter);
    painter.drawLine(QPointF(8, 5.8), QPointF(8, 9.2));
    painter.drawPoint(QPointF(8, 11.8));
}

void DrawReport(QPainter& painter)
{
    DrawSheet(painter);
    for (const qreal y : {6.5, 9.0, 11.5})
        painter.drawLine(QPointF(5.8, y), QPointF(10.2, y));
}

void DrawSign(QPainter& painter, Sign sign)
{
    switch (sign) {
        case Sign::Add:
            painter.drawLine(QPointF(8, 2.5), QPointF(8, 13.5));
            painter.drawLine(QPointF(2.5, 8), QPointF(13.5, 8));
            break;
        case Sign::Stop:
            painter.drawRoundedRect(QRectF(3.5, 3.5, 9, 9), 1, 1);
            break;
        case Sign::Again:
            DrawArc(painter, false);
            break;
        case Sign::Undo:
            DrawArc(painter, true);
            break;
        case Sign::Remove:
            painter.drawLine(QPointF(3.5, 3.5), QPointF(12.5, 12.5));
            painter.drawLine(QPointF(12.5, 3.5), QPointF(3.5, 12.5));
            break;
        case Sign::Delete:
            DrawBin(painter);
            break;
        case Sign::Folder:
            painter.drawPolygon(
                Polygon({{1.5, 3.5}, {6, 3.5}, {7.5, 5.2}, {14.5, 5.2}, {14.5, 13}, {1.5, 13}}));
            break;
        case Sign::Report:
            DrawReport(painter);
            break;
        case Sign::FailedFiles:
            DrawFailedFiles(painter);
            break;
        case Sign::GoOn:
            painter.drawPolygon(Polygon({{4.5, 2.5}, {12.5, 8}, {4.5, 13.5}}));
            break;
        case Sign::Clear:
            painter.drawPolyline(Polygon({{2, 8.4}, {4.2, 10.8}, {8, 5.6}}));
            painter.drawLine(QPointF(9.6, 9.4), QPointF(14, 13.8));
            painter.drawLine(QPointF(14, 9.4), QPointF(9.6, 13.8));
            break;
        case Sign::Search:
            painter.drawEllipse(QPointF(6.8, 6.8), 4.3, 4.3);
            painter.drawLine(QPointF(10, 10), QPointF(13.6, 13.6));
            break;
    }
}

struct Colours
{
    QRgb light;  // on a light ground
    QRgb dark;
};

constexpr std::array<Colours, kRowStates> kColours = {{
    {0x5f6368, 0xa8adb4},  // waiting
    {0x1763c0, 0x7cb4ff},  // running
    {0x1a7a3a, 0x6fd08c},  // finished
    {0xc02a1f, 0xff8a80},  // failed
    {0x8a5a00, 0xf0bd5e},  // stopped
    {0x8a3fb0, 0xd9a3f2},  // interrupted
    {0x5f6368, 0xa8adb4},  // deleted
}};

}  // namespace

QColor StateColour(RowState state, bool is_dark)
{
    const Colours& colours = kColours.at(static_cast<std::size_t>(state));
    return QColor(is_dark ? colours.dark : colours.light);
}

QIcon StateIcon(RowState state, bool is_dark)
{
    const QColor ground = StateColour(state, is_dark);
    const QColor sign = is_dark ? QColor(0x20, 0x21, 0x24) : QColor(Qt::white);
    return QIcon(new DrawnIcon([=](QPainter& painter) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawEllipse(QPointF(8, 8), 7, 7);
        painter.setPen(Pen(sign, 1.8));
        painter.setBrush(Qt::NoBrush);
        DrawStateSign(painter, state);
    }));
}

QIcon SignIcon(Sign sign, const QColor& colour)
{
    return QIcon(new DrawnIcon([=](QPainter& painter) {
        painter.setPen(Pen(colour, 1.5));
        DrawSign(painter, sign);
    }));
}

// As packaging/fetchyard.svg, which the desktop shows.
QIcon ProgramIcon()
{
    return QIcon(new DrawnIcon([](QPainter& painter) {
        QLinearGradient ground(0, 0.5, 0, 15.5);
        ground.setColorAt(0, QColor(0x28, 0x78, 0xdc));
        ground.setColorAt(1, QColor(0x13, 0x56, 0xac));
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawRoundedRect(QRectF(0.5, 0.5, 15, 15), 3.5, 3.5);
        painter.setPen(Pen(Qt::white, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawLine(QPointF(8, 3), QPointF(8, 8.4));
        painter.drawPolyline(Polygon({{5.2, 5.9}, {8, 8.7}, {10.8, 5.9}}));
        painter.drawPolyline(Polygon({{4, 10}, {4, 12}, {12, 12}, {12, 10}}));
    }));
}

}  // namespace FetchyardClient
