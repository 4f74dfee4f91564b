#include "station/Drawing/Overlay.h"

#include "station/Clock.h"
#include "station/Drawing/Figures.h"
#include "station/Drawing/Lettering.h"
#include "station/Random.h"

#include <QRadialGradient>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace Station {
namespace {

// A place on the ground and the size of a person there.
struct Place
{
    QPointF foot;
    double height = 0;
};

struct Canvas
{
    QPainter& painter;
    const Scene& scene;
    const Event& event;
    Random& random;
    Light light;
};

Place PlaceAt(const Scene& scene, double across, double depth)
{
    const double y = scene.horizon + (kPictureHeight - scene.horizon) * depth;
    const double middle = (scene.left + scene.right) / 2;
    const double narrow = 0.35 + 0.65 * depth;
    const double x = middle + (scene.left + (scene.right - scene.left) * across - middle) * narrow;
    return {{x, y}, scene.near_height * (0.2 + 0.8 * depth)};
}

Place SomePlace(const Canvas& canvas, double nearest = 0.9)
{
    const double across = 0.12 + canvas.random.Fraction() * 0.76;
    return PlaceAt(canvas.scene, across, 0.3 + canvas.random.Fraction() * (nearest - 0.3));
}

void DrawMark(const Canvas& canvas, const QRectF& box, QRgb colour, const std::string& label)
{
    canvas.painter.setBrush(Qt::NoBrush);
    canvas.painter.setPen(QPen(QColor(colour), 3));
    canvas.painter.drawRect(box);
    canvas.painter.setPen(Qt::NoPen);
    const Lettering& letters = Lettering::Instance();
    const int top = std::max(66, static_cast<int>(box.top()) - letters.Height());
    letters.Draw(canvas.painter, static_cast<int>(box.left()), top, label);
}

std::string WithConfidence(const Canvas& canvas, const std::string& what)
{
    return what + " " + std::to_string(canvas.event.confidence) + "%";
}

constexpr QRgb kAlarm = 0xffff4030;
constexpr QRgb kNotice = 0xffffc400;
constexpr QRgb kMatch = 0xff40dc60;

void DrawOnePerson(const Canvas& canvas)
{
    const Place place = SomePlace(canvas);
    const QRectF box =
        DrawPerson(canvas.painter, place.foot, place.height, canvas.random.Next(), canvas.light);
    DrawMark(canvas, box, canvas.event.level >= 4 ? kAlarm : kNotice, WithConfidence(canvas, "Person"));
}

void DrawLineCrossing(const Canvas& canvas)
{
    const Place place = SomePlace(canvas);
    canvas.painter.setPen(QPen(QColor(kNotice), 4, Qt::DashLine));
    canvas.painter.drawLine(place.foot + QPointF(-260, 34), place.foot + QPointF(300, -40));
    canvas.painter.setPen(Qt::NoPen);
    const QRectF box =
        DrawPerson(canvas.painter, place.foot, place.height, canvas.random.Next(), canvas.light);
    DrawMark(canvas, box, kAlarm, WithConfidence(canvas, "Line"));
}

void DrawOneCar(const Canvas& canvas)
{
    const Place place = SomePlace(canvas, 0.8);
    const QRectF box = DrawCar(canvas.painter, place.foot, place.height * 0.82, canvas.random.Next(),
                               canvas.light, canvas.event.plate);
    DrawMark(canvas, box, canvas.event.level >= 4 ? kAlarm : kNotice, WithConfidence(canvas, "Vehicle"));
}

void DrawOneFire(const Canvas& canvas)
{
    const Place place = SomePlace(canvas, 0.7);
    const QRectF box = DrawFire(canvas.painter, place.foot, place.height * 0.8, canvas.random.Next());
    DrawMark(canvas, box, kAlarm, WithConfidence(canvas, "Fire"));
}

void DrawFace(const Canvas& canvas)
{
    const Place place = PlaceAt(canvas.scene, 0.25 + canvas.random.Fraction() * 0.5, 0.86);
    DrawPerson(canvas.painter, place.foot, place.height, canvas.random.Next(), canvas.light);
    const QPointF head = place.foot + QPointF(0, -0.905 * place.height);
    const double size = 0.11 * place.height;
    DrawMark(canvas, QRectF(head.x() - size, head.y() - size, 2 * size, 2 * size), kMatch,
             WithConfidence(canvas, "Match"));
}

void DrawCrowd(const Canvas& canvas)
{
    const int count = canvas.random.Between(8, 16);
    std::vector<Place> places;
    places.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        places.push_back(SomePlace(canvas));
    // The near ones hide the far ones.
    std::sort(places.begin(), places.end(),
              [](const Place& a, const Place& b) { return a.foot.y() < b.foot.y(); });
    QRectF all;
    for (const Place& place : places)
        all = all.united(
            DrawPerson(canvas.painter, place.foot, place.height, canvas.random.Next(), canvas.light));
    DrawMark(canvas, all, kNotice, std::to_string(count) + " persons");
}

void DrawAbandoned(const Canvas& canvas)
{
    const Place walker = PlaceAt(canvas.scene, canvas.random.Fraction(), 0.3);
    DrawPerson(canvas.painter, walker.foot, walker.height, canvas.random.Next(), canvas.light);
    const Place place = SomePlace(canvas);
    const QRectF box = DrawBag(canvas.painter, place.foot, place.height * 0.26, canvas.random.Next());
    DrawMark(canvas, box, kAlarm, WithConfidence(canvas, "Object"));
}

// Something is held before the lens.
void DrawTampering(const Canvas& canvas)
{
    const QPointF middle(kPictureWidth * (0.3 + canvas.random.Fraction() * 0.4), kPictureHeight * 0.5);
    QRadialGradient cover(middle, 780);
    cover.setColorAt(0, QColor(18, 16, 16, 252));
    cover.setColorAt(0.6, QColor(40, 34, 32, 246));
    cover.setColorAt(1, QColor(70, 60, 56, 40));
    canvas.painter.fillRect(0, 0, kPictureWidth, kPictureHeight, cover);
    Lettering::Instance().Draw(canvas.painter, kPictureWidth / 2 - 130, kPictureHeight / 2,
                               "VIEW IS COVERED");
}

using DrawHappening = void (*)(const Canvas&);

constexpr std::array<std::pair<std::string_view, DrawHappening>, 10> kHappenings = {{
    {"Intrusion", DrawOnePerson},
    {"Loitering", DrawOnePerson},
    {"Line crossing", DrawLineCrossing},
    {"Vehicle", DrawOneCar},
    {"Parking violation", DrawOneCar},
    {"Fire", DrawOneFire},
    {"Face match", DrawFace},
    {"Crowd", DrawCrowd},
    {"Abandoned object", DrawAbandoned},
    {"Camera tampering", DrawTampering},
}};

void DrawBurntInTexts(QPainter& painter, const Event& event)
{
    constexpr int kStrip = 64;
    constexpr QRgb kShade = 0x6e000000;
    painter.fillRect(0, 0, kPictureWidth, kStrip, QColor::fromRgba(kShade));
    painter.fillRect(0, kPictureHeight - kStrip, kPictureWidth, kStrip, QColor::fromRgba(kShade));
    const Lettering& letters = Lettering::Instance();
    letters.Draw(painter, 24, 18, FormatTime(event.time));
    letters.Draw(painter, kPictureWidth - 24 - letters.Width(event.camera), 18, event.camera);
    letters.Draw(painter, 24, kPictureHeight - 18 - letters.Height(), event.type);
    const std::string number = "#" + std::to_string(event.id);
    letters.Draw(painter, kPictureWidth - 24 - letters.Width(number), kPictureHeight - 18 - letters.Height(),
                 number);
}

}  // namespace

void DrawOverlay(QImage& image, const Scene& scene, const Event& event)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    Random random(static_cast<std::uint64_t>(event.id) * 1000003u + static_cast<std::uint64_t>(event.time));
    const Canvas canvas{painter, scene, event, random, LightAt(scene, ToCalendar(event.time).hour)};
    const auto happening = std::find_if(kHappenings.begin(), kHappenings.end(),
                                        [&event](const auto& entry) { return entry.first == event.type; });
    if (happening != kHappenings.end())
        happening->second(canvas);
    DrawBurntInTexts(painter, event);
}

}  // namespace Station
