#include "Platform/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace ZellPictureLoader {

struct CFolderLock::Handle
{
    explicit Handle(int open_file) : file(open_file) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { close(file); }

    int file;
};

namespace {

// A file that was removed between opening and locking is locked in vain: nobody else would meet that lock.
bool IsStillThere(int file, const std::string& path)
{
    struct stat opened = {};
    struct stat named = {};
    return fstat(file, &opened) == 0 && stat(path.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
           opened.st_dev == named.st_dev;
}

}  // namespace

std::unique_ptr<CFolderLock> CFolderLock::Take(const std::string& path)
{
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0)
        return nullptr;
    auto handle = std::make_unique<Handle>(file);
    if (flock(file, LOCK_EX | LOCK_NB) != 0 || !IsStillThere(file, path))
        return nullptr;
    return std::unique_ptr<CFolderLock>(new CFolderLock(path, std::move(handle)));
}

CFolderLock::CFolderLock(std::string path, std::unique_ptr<Handle> handle)
    : path_(std::move(path)), handle_(std::move(handle))
{
}

CFolderLock::~CFolderLock()
{
    unlink(path_.c_str());
}

}  // namespace ZellPictureLoader
