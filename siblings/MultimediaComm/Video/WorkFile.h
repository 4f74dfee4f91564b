#pragma once

#include "MultimediaCommHost/AvPointers.h"
#include "Platform/DiskFile.h"

#include <atomic>
#include <string>

namespace Zell::MultimediaComm {

// What is written before it becomes a target: a file of the user's own in the client's data folder, gone with
// this object unless it was placed. A secret one has a password to be: its plain form has no name on POSIX,
// and goes however the process ends.
class WorkFile
{
public:
    // Throws VideoFailure if there is no such file to be had. Each write fails once stop is up.
    WorkFile(const std::string& password, const std::atomic<bool>& stop);
    WorkFile(const WorkFile&) = delete;
    WorkFile& operator=(const WorkFile&) = delete;
    ~WorkFile();

    // For a muxer; lives as long as this.
    AVIOContext* Io() const { return io_.get(); }
    // Throws what the last write failed with; nothing if it did not fail.
    void CheckWrites() const;
    // Makes the content the target, protected if there is a password. Throws VideoFailure.
    void Place(const std::string& target);

private:
    static int WritePart(void* opaque, std::uint8_t* bytes, int size);
    static std::int64_t Seek(void* opaque, std::int64_t place, int whence);
    void PlacePlain(const std::string& target);
    void PlaceProtected(const std::string& target);

    std::string password_;
    const std::atomic<bool>& stop_;
    std::string path_;
    Stream stream_;
    int system_error_ = 0;
    av::IoStream io_;
};

}  // namespace Zell::MultimediaComm
