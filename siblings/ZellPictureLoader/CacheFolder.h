#pragma once

#include "Platform/FolderLock.h"
#include "ZellBase/Error.h"

#include <atomic>
#include <cstdint>
#include <future>
#include <memory>
#include <string>

namespace ZellPictureLoader {

// The folder in which one run of the library keeps its files: "ROOT/GUID/", with "ROOT/GUID.lock" held as
// long as it lives, so that several clients can share a root. It goes away with the object; what a killed
// process left is removed by the next one that makes a folder in the same root. Any thread.
class CCacheFolder
{
public:
    // Null with the system's error if the folder can't be made.
    static std::shared_ptr<CCacheFolder> Make(const std::string& root, Zell::Base::Error::ErrorCode& error);

    CCacheFolder(const CCacheFolder&) = delete;
    CCacheFolder& operator=(const CCacheFolder&) = delete;
    ~CCacheFolder();

    // Path of a file that no one else writes.
    std::string NewFile();
    const std::string& path() const { return path_; }
    // Ready when the folder is off the disk; to be asked for once.
    std::future<void> Gone() { return gone_.get_future(); }

private:
    CCacheFolder(std::string path, std::unique_ptr<CFolderLock> lock);

    std::string path_;  // with a final "/"
    std::unique_ptr<CFolderLock> lock_;
    std::atomic<std::uint64_t> next_file_{1};
    std::promise<void> gone_;
};

}  // namespace ZellPictureLoader
