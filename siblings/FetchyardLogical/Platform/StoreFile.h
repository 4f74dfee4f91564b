#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

// What the store asks of the system. Paths are UTF-8.
namespace FetchyardLogical::details {

// What the system knows an open file by.
struct OpenedFile;

// A file that is written without buffers of this process: what a write was given is with the system when it
// returns, and stays there however the process ends. It does not wait for the disk. One thread at a time.
class StoreFile
{
public:
    // Creates the file if it is not there. Null with the system's words if it can't be written.
    static std::unique_ptr<StoreFile> Open(const std::string& path, std::string& reason);

    StoreFile(const StoreFile&) = delete;
    StoreFile& operator=(const StoreFile&) = delete;
    ~StoreFile();

    // False with the system's words if not all was written.
    bool WriteAt(std::uint64_t offset, const std::string& bytes, std::string& reason);
    // Cuts the file off; what can't be cut does no harm.
    void Cut(std::uint64_t size);

private:
    explicit StoreFile(std::unique_ptr<OpenedFile> opened);

    std::unique_ptr<OpenedFile> opened_;
};

// Says that a store has a living owner: a lock that the system itself gives up however the process ends. The
// file stays.
class StoreLock
{
public:
    // Null if another owner has it (in_use), or with the system's words if there can't be a lock.
    static std::unique_ptr<StoreLock> Take(const std::string& path, bool& in_use, std::string& reason);

    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;
    ~StoreLock();

private:
    explicit StoreLock(std::unique_ptr<OpenedFile> opened);

    std::unique_ptr<OpenedFile> opened_;
};

}  // namespace FetchyardLogical::details
