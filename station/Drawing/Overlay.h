#pragma once

#include "station/Data/Store.h"
#include "station/Drawing/Scenes.h"

namespace Station {

// Draws what happened into an empty scene, with the camera's name and the time burnt in.
void DrawOverlay(QImage& image, const Scene& scene, const Event& event);

}  // namespace Station
