#pragma once

#include "MultimediaComm/Export.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

// Files that open only with a password, for those who write and read videos. The form is that of the openssl
// tool:
//
//   openssl enc -d -aes-256-cbc -pbkdf2 -iter 600000 -in protected.mp4 -out plain.mp4
//
// The form has no check of its own beyond its last bytes: a wrong password passes about once in 256 times,
// and what comes out is then no video. Paths and passwords are UTF-8. Passwords are never logged.
namespace Zell::MultimediaComm {

// Asked now and then during longer work; true ends it. May be empty.
using IsStopped = std::function<bool()>;

// Writes a protected file from bytes as they come. Nothing plain reaches the disk. One thread.
class MULTIMEDIACOMM_API ProtectedWriter
{
public:
    ProtectedWriter();
    ProtectedWriter(const ProtectedWriter&) = delete;
    ProtectedWriter& operator=(const ProtectedWriter&) = delete;
    ~ProtectedWriter();  // removes the file if Finish has not succeeded

    // Creates the file, or empties the one that is there. Turning the password into a key takes some tenths
    // of a second, during which is_stopped is asked. False, with the reason in words, if there is no file or
    // the password is empty.
    bool Open(const std::string& path, const std::string& password, std::string& reason,
              const IsStopped& is_stopped = {});
    bool Write(const void* bytes, std::size_t size, std::string& reason);
    // Closes the file; only then it is whole.
    bool Finish(std::string& reason);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// Reads a protected file from any place in it, without a plain file on disk. One thread.
class MULTIMEDIACOMM_API ProtectedReader
{
public:
    ProtectedReader();
    ProtectedReader(const ProtectedReader&) = delete;
    ProtectedReader& operator=(const ProtectedReader&) = delete;
    ~ProtectedReader();

    // False, with the reason in words, for a file that can't be read, is no protected file, or has another
    // password as far as that can be told.
    bool Open(const std::string& path, const std::string& password, std::string& reason,
              const IsStopped& is_stopped = {});
    // Bytes of the plain content.
    std::int64_t Size() const;
    // Up to size bytes from that place; 0 at the end, -1 if the disk refuses.
    std::int64_t Read(std::int64_t offset, void* bytes, std::size_t size);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// Hands the plain content to the sink, from its start to its end; the sink returns false to end it.
MULTIMEDIACOMM_API bool ReadProtected(const std::string& file, const std::string& password,
                                      const std::function<bool(const char* bytes, std::size_t size)>& sink,
                                      std::string& reason);
// Writes the plain content into target, which appears whole or not at all.
MULTIMEDIACOMM_API bool Unprotect(const std::string& file, const std::string& password,
                                  const std::string& target, std::string& reason);
// Writes a protected copy of a plain file, which stays. target appears whole or not at all.
MULTIMEDIACOMM_API bool Protect(const std::string& file, const std::string& password,
                                const std::string& target, std::string& reason);

// Says that this plain file is going to be stamped, and that the outcome is to be protected: StartCovert with
// this source then writes a protected target, and a Translate of that target another one. An empty password
// forgets the file. Any thread. The newest 256 files are remembered.
MULTIMEDIACOMM_API void ProtectStamped(const std::string& source_video, const std::string& password);

}  // namespace Zell::MultimediaComm
