#pragma once

#include "CacheFolder.h"
#include "ZellBase/Error.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace ZellPictureLoader {

// One fetched picture, in memory or, from a size on, in a file that goes away with the object. Its bytes
// never change, so any thread may read it.
class CPicture
{
public:
    explicit CPicture(std::string bytes);
    CPicture(std::shared_ptr<CCacheFolder> folder, std::string file, std::uint64_t size);
    CPicture(const CPicture&) = delete;
    CPicture& operator=(const CPicture&) = delete;
    ~CPicture();

    bool is_file() const { return folder_ != nullptr; }
    std::uint64_t size() const { return size_; }
    // Bytes that the object holds in memory.
    std::size_t memory() const { return bytes_.capacity(); }

    // Each returns (0, 0) or the system's error.
    Zell::Base::Error::ErrorCode ReadInto(std::string& data) const;
    // The path must not be in use; what was begun there is removed on failure.
    Zell::Base::Error::ErrorCode CopyTo(const std::string& path) const;
    // Gives the file away, which replaces the one at the path; the object is of no use then. Only for a
    // picture in a file that nobody else holds.
    Zell::Base::Error::ErrorCode MoveTo(const std::string& path);

private:
    std::string bytes_;
    std::shared_ptr<CCacheFolder> folder_;  // stays as long as there is a file in it
    std::string file_;
    std::uint64_t size_;
};

// Puts a whole copy of the picture under the path, which keeps what it had if that fails. The copy is made in
// the cache's folder: half a picture must never lie where an archive step or a progress count looks.
Zell::Base::Error::ErrorCode PlaceCopy(const CPicture& picture, CCacheFolder& folder,
                                       const std::string& path);

// Takes in one answer piece by piece: small ones in memory, large ones (a dock station's file may be a film)
// in a file. One thread at a time.
class CPictureReceiver
{
public:
    explicit CPictureReceiver(std::shared_ptr<CCacheFolder> folder);
    CPictureReceiver(const CPictureReceiver&) = delete;
    CPictureReceiver& operator=(const CPictureReceiver&) = delete;
    ~CPictureReceiver();

    // False: error() says why.
    bool Take(const char* data, std::size_t size);
    const Zell::Base::Error::ErrorCode& error() const { return error_; }
    // The picture, once; null if nothing came or the disk failed.
    std::shared_ptr<CPicture> Finish();

private:
    bool OpenFile();
    bool Write(const char* data, std::size_t size);
    void CloseFile();
    void RemoveFile();

    std::shared_ptr<CCacheFolder> folder_;
    std::string bytes_;
    std::string file_;
    void* handle_ = nullptr;
    std::uint64_t size_ = 0;
    Zell::Base::Error::ErrorCode error_;
};

}  // namespace ZellPictureLoader
