#pragma once

namespace FetchyardBussiness::Platform {

// Effective dots per inch of a display: 96 at a scale of 100 per cent, 0 if not known.
struct DisplayDpi
{
    unsigned int x = 0;
    unsigned int y = 0;
};

// Of the primary display, asked anew at each call.
DisplayDpi PrimaryDisplayDpi();

}  // namespace FetchyardBussiness::Platform
