#pragma once

#include "station/Drawing/Scenes.h"

#include <cstdint>
#include <string>

namespace Station {

// A standing or walking person; foot is between the feet, height in pixels. Gives the box around the figure.
QRectF DrawPerson(QPainter& painter, const QPointF& foot, double height, std::uint64_t seed, Light light);
// A car from its front; foot is the middle of where it stands, height in pixels.
QRectF DrawCar(QPainter& painter, const QPointF& foot, double height, std::uint64_t seed, Light light,
               const std::string& plate);
QRectF DrawFire(QPainter& painter, const QPointF& foot, double height, std::uint64_t seed);
QRectF DrawBag(QPainter& painter, const QPointF& foot, double height, std::uint64_t seed);

}  // namespace Station
