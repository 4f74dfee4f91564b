#pragma once

#include "Platform/StoreFile.h"
#include "Store/StoredTask.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace FetchyardLogical::details {

// What was kept last and may not be in the database yet: two files beside it, "<store>.recent-0" and "-1",
// which take turns. One is written while the other's changes go into the database; then that one is written
// over from its beginning. A change is one frame: a mark, its size, its number, the number up to which the
// database was complete then, a checksum, and the bytes. Numbers go up by one, so a frame that is missing
// shows. What stands behind the newest frame of a file is left over from an earlier turn and has old numbers.
// Not locked.
class Journal
{
public:
    struct Frame
    {
        std::uint64_t number = 0;
        std::uint64_t complete = 0;
        Changes changes;
    };
    static std::string FileOf(const std::string& store, int file);
    // What is on disk, in the order of the numbers.
    static std::vector<Frame> Read(const std::string& store);
    // Up to which number the database was complete at least, as the frames tell.
    static std::uint64_t CompleteTo(const std::vector<Frame>& frames);
    // Whether a frame behind this number is missing although a later one is there.
    static bool HasGap(const std::vector<Frame>& frames, std::uint64_t complete);

    explicit Journal(std::string store) : store_(std::move(store)) {}

    // Begins both files anew: the database has to be complete. False with the reason if they can't be
    // written.
    bool Open(std::string& reason);
    // Empties both files when the database is complete and nothing more comes.
    void Clear();
    // One write of the system. False with the reason if it failed; the frame is then not there.
    bool Append(std::uint64_t number, std::uint64_t complete, const std::string& bytes, std::string& reason);
    // Goes on in the other file if all its frames are up to this number, which the database is complete to.
    void TakeTurns(std::uint64_t complete);

private:
    struct File
    {
        std::unique_ptr<StoreFile> file;
        std::uint64_t end = 0;
        std::uint64_t last_number = 0;
    };

    const std::string store_;
    std::array<File, 2> files_;
    std::size_t current_ = 0;
};

}  // namespace FetchyardLogical::details
