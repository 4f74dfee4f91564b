#pragma once

#include "Session.h"

#include <memory>

namespace ZellPictureLoader {

// The run in progress; null between the last stop and the next start. Holding it keeps its files.
std::shared_ptr<CSession> CurrentSession();

}  // namespace ZellPictureLoader
