#pragma once

#include <httplib.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

// What the station needs of the operating system beyond the standard library: one source for each platform.
namespace Station::Platform {

using Socket = socket_t;

// A port that a station used a moment ago can be had again, one that is in use can't.
void PrepareListener(Socket listener);
// Lets as many clients as the system allows wait for their turn; the HTTP library's own queue holds five.
void WidenBacklog(Socket listener);
// Small answers leave at once.
void DisableDelay(Socket socket);
// Waits until there is something to read (or the other side is gone) for at most timeout_ms; false if nothing
// came.
bool WaitReadable(Socket socket, int timeout_ms);
// Whether the other side has closed the connection and nothing waits to be read. Returns at once.
bool HasLeft(Socket socket);
bool WaitWritable(Socket socket, int timeout_ms);
// Bytes moved; 0 at the other side's end; below 0 on failure. Never raises a signal.
long Receive(Socket socket, char* data, std::size_t size);
long Send(Socket socket, const char* data, std::size_t size);
// The reading side sees the end; answers under way can still be written.
void EndReading(Socket socket);
void Close(Socket socket);
// Closes so that the other side sees a reset.
void CloseWithReset(Socket socket);

// To be called before the first thread is made: WaitForStopSignal then gets the signals to end the process.
void HoldStopSignals();
void WaitForStopSignal();

// Only the owner may read the file from now on; false on failure.
bool RestrictToOwner(const std::filesystem::path& path);
// Reads a password: a terminal does not show it.
std::string ReadSecretLine(const std::string& prompt);
// The words behind the program's name, in UTF-8.
std::vector<std::string> CommandWords(int argc, char** argv);
// Qt's screen on which letters can be drawn without a display.
const char* DrawingScreen();

}  // namespace Station::Platform
