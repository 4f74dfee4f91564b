#pragma once

#include "MultimediaCommHost/Protection.h"
#include "plugins/clipvault/Downloads.h"
#include "ZellBase/Error.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace ClipVault {

// A file that grows in the client's data folder and is moved to its place when it is whole; otherwise it goes
// with the object. With a password what is written is ciphered on the way to the disk. One thread. Operations
// give (0, 0) or what went wrong; a stop of the download ends the long ones.
class ClipFile
{
public:
    ClipFile(const std::string& password, const Download& download);
    ClipFile(const ClipFile&) = delete;
    ClipFile& operator=(const ClipFile&) = delete;
    ~ClipFile();

    // Empties it too.
    Zell::Base::Error::ErrorCode Open();
    Zell::Base::Error::ErrorCode Write(const char* data, std::size_t size);
    // Closes it. The target is replaced if it is there.
    Zell::Base::Error::ErrorCode MoveTo(const std::string& target);
    // Bytes that were written, before any cipher.
    std::int64_t Size() const { return size_; }

private:
    Zell::Base::Error::ErrorCode OpenPlain();
    Zell::Base::Error::ErrorCode OpenProtected();
    Zell::Base::Error::ErrorCode Close();
    Zell::Base::Error::ErrorCode CopyTo(const std::string& target) const;

    const std::string password_;
    const Download& download_;
    std::string path_;
    std::int64_t size_ = 0;
    void* handle_ = nullptr;  // of a plain file
    std::unique_ptr<Zell::MultimediaComm::ProtectedWriter> protected_;
};

}  // namespace ClipVault
