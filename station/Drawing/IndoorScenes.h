#pragma once

#include "station/Drawing/Scenes.h"

namespace Station {

void DrawCorridor(QPainter& painter, std::uint64_t seed, Light light);
void DrawHall(QPainter& painter, std::uint64_t seed, Light light);
void DrawWarehouse(QPainter& painter, std::uint64_t seed, Light light);

}  // namespace Station
