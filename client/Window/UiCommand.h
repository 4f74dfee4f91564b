#pragma once

#include "LibraryHost.h"

#include <string>
#include <vector>

namespace FetchyardClient {

struct UiOptions
{
    HostOptions host;
    std::string theme;                  // "system", "light", "dark"; empty: what was chosen last
    std::string language;               // "en", "zh", "system"; empty: what was chosen last
    std::vector<std::string> requests;  // files to run at once
};

// Shows the window and runs until it is closed; a QApplication is there. The exit code of the program.
int UiCommand(const UiOptions& options);

}  // namespace FetchyardClient
