#pragma once

#include <memory>
#include <string>

namespace ZellPictureLoader {

// Says that a folder has a living owner: a lock that the system itself holds, and gives up however the
// process ends.
class CFolderLock
{
public:
    // Creates the lock file and locks it. Null if another process holds it, if it was removed at that moment,
    // or if it can't be created.
    static std::unique_ptr<CFolderLock> Take(const std::string& path);

    CFolderLock(const CFolderLock&) = delete;
    CFolderLock& operator=(const CFolderLock&) = delete;
    // Removes the file and gives up the lock.
    ~CFolderLock();

private:
    struct Handle;
    CFolderLock(std::string path, std::unique_ptr<Handle> handle);

    std::string path_;
    std::unique_ptr<Handle> handle_;
};

}  // namespace ZellPictureLoader
