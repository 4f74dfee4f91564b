#pragma once

#include <string>

namespace FetchyardLogical::details {

// Renames the database and its own log to "<store>.damaged-1" or the next free number. The new name, empty if
// that failed.
std::string SetStoreAside(const std::string& store);
// Copies the files of the journal to such names. The first one, empty if that failed.
std::string CopyJournalAside(const std::string& store);

// A store in which a bad page was met while it was open is looked at whole at its next opening; a file beside
// it says so meanwhile.
void MarkSuspect(const std::string& store);
bool IsSuspect(const std::string& store);
void ClearSuspect(const std::string& store);

}  // namespace FetchyardLogical::details
