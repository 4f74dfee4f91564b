#pragma once

#include <string>
#include <vector>

namespace FetchyardClient {

// Whether standard output is a terminal that redraws lines by control sequences.
bool IsTerminal();
// Its width in characters, 80 if unknown.
int TerminalWidth();
// Whether a window can be shown: there is a display, or somebody chose a platform for Qt that needs none.
bool HasDisplay();
// The words behind the program's name, in UTF-8.
std::vector<std::string> CommandWords(int argc, char** argv);
// Number of this process.
long ProcessNumber();
// A word of a command as this platform's command line reads it back, in quotes where it needs them.
std::string ShellWord(const std::string& word);

}  // namespace FetchyardClient
