#pragma once

#include "station/Random.h"

#include <string>

namespace Station {

struct CameraText
{
    const char* name;
    const char* place;
    const char* scene;
};

// The cameras of the site; beyond the last one they start again.
const CameraText& CameraTextOf(int index);

std::string SomePerson(Random& random);
std::string SomePlate(Random& random);
// What an operator or the analysis notes about an event of that type.
std::string SomeText(Random& random, const std::string& type, const std::string& place);

}  // namespace Station
