#pragma once

namespace FetchyardClient {

// Whether standard output is a terminal that redraws lines by control sequences.
bool IsTerminal();
// Its width in characters, 80 if unknown.
int TerminalWidth();
// Number of this process.
long ProcessNumber();

}  // namespace FetchyardClient
