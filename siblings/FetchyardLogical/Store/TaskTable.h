#pragma once

#include "Store/LastChanges.h"
#include "Store/Sqlite.h"
#include "Store/StoredTask.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace FetchyardLogical::details {

// The database of a task store. One thread at a time; everything throws SqliteFailure.
class TaskTable
{
public:
    // What the file is, for this version.
    enum class Fit {
        Ready,
        Newer,    // of a later version
        Foreign,  // a database, but no task store
    };

    // Opens the file and, to write, makes it if it is not there.
    TaskTable(const std::string& path, Sqlite::Use use);

    Fit Look();
    // Only on one that is Ready, to write: brings the tables to this version.
    void Migrate();
    // Throws if there are bad pages anywhere, which takes its time.
    void CheckPages();
    // What is read from now on is of one moment, whatever another process writes meanwhile. Once, to read.
    void HoldView();
    // Which change is the last that is in.
    std::uint64_t Complete();
    void SetComplete(std::uint64_t number);
    // All changes in one transaction, on disk when it returns.
    void Write(const LastChanges& changes, std::uint64_t number);
    // The tasks by place. Throws if some are missing; records that are not what was written are left
    // out and counted.
    std::vector<StoredTask> Load(std::size_t& damaged);
    // What can be read of a damaged file, as changes that put it into another; throws nothing.
    LastChanges Salvage();
    // Moves such records to a table of their own.
    void SetDamagedAside();
    // Empty if there is none or it is not what was written.
    std::string ResumeText(const std::string& guid);

private:
    struct Statements;

    void Write(const Change& change, Statements& statements);

    Sqlite database_;
};

}  // namespace FetchyardLogical::details
