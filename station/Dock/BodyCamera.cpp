#include "station/Dock/BodyCamera.h"

#include "station/Drawing/Figures.h"
#include "station/Drawing/Jpeg.h"
#include "station/Drawing/Scenes.h"
#include "station/Random.h"

#include <array>
#include <cmath>

namespace Station {
namespace {

constexpr int kFrames = 12;
constexpr int kVideoWidth = 640;
constexpr int kSamplesPerSecond = 8000;
constexpr int kSeconds = 4;
constexpr double kPi = 3.14159265358979323846;

constexpr std::array<const char*, 4> kPlaces = {"street", "corridor", "hall", "parking"};

// A scene with a person in it, who is so near: 0 at the far end, 1 before the camera.
QImage DrawMeeting(const QImage& empty, const Scene& scene, std::uint64_t seed, double nearness)
{
    QImage image = empty.copy();
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double depth = 0.35 + 0.6 * nearness;
    const double y = scene.horizon + (kPictureHeight - scene.horizon) * depth;
    const double x = kPictureWidth * (0.62 - 0.2 * nearness);
    DrawPerson(painter, QPointF(x, y), scene.near_height * depth, seed, Light::Day);
    return image;
}

const Scene& PlaceOf(std::uint64_t seed)
{
    return FindScene(kPlaces[seed % kPlaces.size()]);
}

void AppendNumber(std::string& out, std::uint32_t number, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out += static_cast<char>((number >> (8 * i)) & 0xFF);
}

std::string WavHead(std::uint32_t data_bytes)
{
    constexpr std::uint32_t kFormatBytes = 16;
    constexpr std::uint32_t kBytesOfSample = 2;
    std::string head = "RIFF";
    AppendNumber(head, 36 + data_bytes, 4);
    head += "WAVEfmt ";
    AppendNumber(head, kFormatBytes, 4);
    AppendNumber(head, 1, 2);  // plain samples
    AppendNumber(head, 1, 2);  // one channel
    AppendNumber(head, kSamplesPerSecond, 4);
    AppendNumber(head, kSamplesPerSecond * kBytesOfSample, 4);
    AppendNumber(head, kBytesOfSample, 2);
    AppendNumber(head, 8 * kBytesOfSample, 2);
    head += "data";
    AppendNumber(head, data_bytes, 4);
    return head;
}

}  // namespace

std::string BodyCameraPicture(std::uint64_t seed)
{
    const Scene& scene = PlaceOf(seed);
    return ToJpeg(DrawMeeting(DrawScene(scene, seed, Light::Day), scene, seed, 0.8));
}

std::string BodyCameraVideo(std::uint64_t seed)
{
    const Scene& scene = PlaceOf(seed);
    const QImage empty = DrawScene(scene, seed, Light::Day);
    std::string frames;
    for (int i = 0; i < kFrames; ++i)
        frames += ToJpeg(DrawMeeting(empty, scene, seed, static_cast<double>(i) / kFrames)
                             .scaledToWidth(kVideoWidth, Qt::SmoothTransformation));
    return frames;
}

std::string BodyCameraSound(std::uint64_t seed)
{
    constexpr double kLoudness = 9000;
    Random random(seed);
    std::string samples;
    for (int second = 0; second < kSeconds; ++second) {
        const int pitch = random.Between(220, 660);  // hertz
        for (int i = 0; i < kSamplesPerSecond; ++i) {
            const double fading = 1.0 - static_cast<double>(i) / kSamplesPerSecond;
            const double value = kLoudness * fading * std::sin(2 * kPi * pitch * i / kSamplesPerSecond);
            AppendNumber(samples, static_cast<std::uint32_t>(std::lround(value)), 2);
        }
    }
    return WavHead(static_cast<std::uint32_t>(samples.size())) + samples;
}

}  // namespace Station
