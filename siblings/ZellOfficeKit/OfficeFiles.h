#pragma once

#include <string>

// Moves between the work folder and the folders of reports. Paths are UTF-8.
namespace ZellOfficeKit {

// The work folder, made if it is missing; empty if it can't be made or written.
std::string PrepareWorkFolder();
// Moves a finished file to its path, replacing what is there; across file systems by a copy beside the path
// that is renamed when it is whole. False, with the source still in place, if the disk refuses.
bool MoveIntoPlace(const std::string& source, const std::string& target);
// Moves a file that is not whole out of its folder, under a name of its own that begins like name. If that
// fails the file is removed, so that nobody takes it for a whole one; what is no file, a device perhaps,
// stays. Returns words for the log that begin with what and tell where it is now; empty if there was no such
// file.
std::string MoveAside(const std::string& path, const std::string& name, const std::string& what);
// Whether a file of that path can be made; leaves nothing behind.
bool CanBeCreated(const std::string& path);
// The last part of a path.
std::string NameOfPath(const std::string& path);

}  // namespace ZellOfficeKit
