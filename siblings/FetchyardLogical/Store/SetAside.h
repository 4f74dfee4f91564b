#pragma once

#include <string>

namespace FetchyardLogical::details {

// Renames the database and its own log to "<store>.damaged-1" or the next free number. The new name, empty if
// that failed.
std::string SetStoreAside(const std::string& store);
// Copies the files of the journal to such names. The first one, empty if that failed.
std::string CopyJournalAside(const std::string& store);

}  // namespace FetchyardLogical::details
