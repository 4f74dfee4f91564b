#pragma once

#include <map>
#include <string>

// Whether a folder may go with the task that it was made for. Paths are UTF-8.
namespace FetchyardLogical::details {

// The folder with "/" between and behind its parts and without "." and ".."; empty for an empty text.
std::string NormalFolder(const std::string& folder);
// Whether no file lies in the folder or below it. False if it can't be read; true if it is not there.
bool HoldsNoFile(const std::string& folder);
// Whether the folder is another one or lies above it. Both normal.
bool IsOrHolds(const std::string& folder, const std::string& other);
// Removes the folder with all in it, unless it is a root, a data folder of the client or above one. False,
// with a line in the log, if it is or something stays behind.
bool RemoveOwnFolder(const std::string& folder);

// Which folders the tasks of the list have. Not locked.
class FolderClaims
{
public:
    // A text that is empty claims nothing.
    void Add(const std::string& folder);
    void Drop(const std::string& folder);
    void Clear() { claims_.clear(); }
    // Whether at most `own` claims lie on the folder and on what is below it.
    bool IsFree(const std::string& folder, std::size_t own) const;

private:
    std::map<std::string, std::size_t> claims_;  // normal folder to number of tasks
};

}  // namespace FetchyardLogical::details
