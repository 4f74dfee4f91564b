#pragma once

#include "station/Drawing/Scenes.h"

namespace Station {

void DrawStreet(QPainter& painter, std::uint64_t seed, Light light);
void DrawParking(QPainter& painter, std::uint64_t seed, Light light);
void DrawFence(QPainter& painter, std::uint64_t seed, Light light);

}  // namespace Station
