#pragma once

namespace Station {

// Makes the letters that are burnt into pictures. To be called once, on the main thread.
void StartFonts();

}  // namespace Station
