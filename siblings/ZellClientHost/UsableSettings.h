#pragma once

#include "ZellClientHostSettings/ClientSettings.h"

namespace ZellClientHost {

// Puts the platform's folders in place of empty ones, a "/" behind each folder, and takes the one behind a
// site's address away.
void MakeUsable(ClientSettings& settings);

}  // namespace ZellClientHost
