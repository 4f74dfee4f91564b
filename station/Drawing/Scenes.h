#pragma once

#include <QImage>
#include <QPainter>

#include <cstdint>
#include <string>
#include <vector>

namespace Station {

inline constexpr int kPictureWidth = 1280;
inline constexpr int kPictureHeight = 720;

enum class Light { Day, Dusk, Night };

// What a camera looks at. People and cars stand on the ground, which runs from the horizon to the lower edge.
struct Scene
{
    const char* name;
    bool is_outdoors;
    double horizon;      // y of the far end of the ground
    double near_height;  // of a person at the lower edge, in pixels
    double left;         // where somebody can stand at the lower edge, as x
    double right;
    void (*draw)(QPainter& painter, std::uint64_t seed, Light light);
};

// The scene of that name; the first one if there is none.
const Scene& FindScene(const std::string& name);

Light LightAt(const Scene& scene, int hour);

// The empty scene: the same for the same seed.
QImage DrawScene(const Scene& scene, std::uint64_t seed, Light light);

}  // namespace Station
