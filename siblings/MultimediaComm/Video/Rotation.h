#pragma once

#include "MultimediaCommHost/AvPointers.h"

#include <utility>

// Pictures that a player turns: a file says by how much.
namespace Zell::MultimediaComm {

// How far clockwise: quarters, 0 to 3. Other angles are rounded to the nearest quarter.
int QuarterTurns(const AVStream& stream);

// Where a place of a picture of width x height comes to lie when the picture is turned, and the way back.
std::pair<int, int> TurnedPlace(int x, int y, int quarter_turns, int width, int height);
std::pair<int, int> UnturnedPlace(int x, int y, int quarter_turns, int width, int height);

}  // namespace Zell::MultimediaComm
