#pragma once

#include "Window/TaskRow.h"

#include <QColor>
#include <QIcon>

namespace FetchyardClient {

// A state's colour on a light or a dark ground: at least 4.5 to 1 against it, so that words in it can be
// read.
QColor StateColour(RowState state, bool is_dark);
// A disc of that colour with a sign in it, so that the state can be told without the colour.
QIcon StateIcon(RowState state, bool is_dark);

// Pictures of the buttons, drawn in a colour at any size.
enum class Sign { Add, Stop, Again, Remove, Delete, Folder, Report, FailedFiles, GoOn, Undo, Clear, Search };
QIcon SignIcon(Sign sign, const QColor& colour);
// The picture of the program.
QIcon ProgramIcon();

}  // namespace FetchyardClient
