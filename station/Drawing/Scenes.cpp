#include "station/Drawing/Scenes.h"

#include "station/Drawing/IndoorScenes.h"
#include "station/Drawing/OutdoorScenes.h"
#include "station/Random.h"

#include <QRadialGradient>

#include <algorithm>
#include <array>

namespace Station {
namespace {

constexpr std::array<Scene, 6> kScenes = {{
    {"street", true, 330, 300, 120, 1160, DrawStreet},
    {"parking", true, 340, 290, 60, 1220, DrawParking},
    {"fence", true, 320, 310, 100, 1180, DrawFence},
    {"corridor", false, 400, 470, 330, 950, DrawCorridor},
    {"hall", false, 380, 400, 100, 1180, DrawHall},
    {"warehouse", false, 370, 400, 380, 900, DrawWarehouse},
}};

int Clamp(int value)
{
    return std::clamp(value, 0, 255);
}

// The grain of a sensor, stronger in the dark.
void AddGrain(QImage& image, std::uint64_t seed, int strength)
{
    Random random(seed);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::uint64_t bits = 0;
        for (int x = 0; x < image.width(); ++x) {
            if (x % 8 == 0)
                bits = random.Next();
            const int grain = static_cast<int>(bits & 0xFF) * strength / 128 - strength;
            bits >>= 8;
            line[x] = qRgb(Clamp(qRed(line[x]) + grain), Clamp(qGreen(line[x]) + grain),
                           Clamp(qBlue(line[x]) + grain));
        }
    }
}

// Cameras show the night without colours.
void TakeColoursAway(QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grey = qGray(line[x]);
            line[x] = qRgb(grey * 92 / 100, Clamp(grey), Clamp(grey * 97 / 100));
        }
    }
}

void DrawVignette(QPainter& painter)
{
    QRadialGradient shade(kPictureWidth / 2.0, kPictureHeight / 2.0, 820);
    shade.setColorAt(0.55, QColor(0, 0, 0, 0));
    shade.setColorAt(1.0, QColor(0, 0, 0, 120));
    painter.fillRect(0, 0, kPictureWidth, kPictureHeight, shade);
}

}  // namespace

const Scene& FindScene(const std::string& name)
{
    const auto found = std::find_if(kScenes.begin(), kScenes.end(),
                                    [&name](const Scene& scene) { return name == scene.name; });
    return found == kScenes.end() ? kScenes.front() : *found;
}

Light LightAt(const Scene& scene, int hour)
{
    if (!scene.is_outdoors || (hour >= 8 && hour < 17))
        return Light::Day;
    return hour >= 6 && hour < 20 ? Light::Dusk : Light::Night;
}

QImage DrawScene(const Scene& scene, std::uint64_t seed, Light light)
{
    QImage image(kPictureWidth, kPictureHeight, QImage::Format_RGB32);
    // The soft edges of what is drawn leave some of a corner's pixel as it was.
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    scene.draw(painter, seed, light);
    DrawVignette(painter);
    painter.end();
    if (light == Light::Night)
        TakeColoursAway(image);
    AddGrain(image, seed, light == Light::Night ? 6 : 4);
    return image;
}

}  // namespace Station
