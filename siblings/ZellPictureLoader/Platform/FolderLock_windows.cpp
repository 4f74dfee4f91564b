#include "Platform/FolderLock.h"

#include <windows.h>

#include <filesystem>
#include <utility>

namespace ZellPictureLoader {

struct CFolderLock::Handle
{
    explicit Handle(HANDLE open_file) : file(open_file) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { CloseHandle(file); }

    HANDLE file;
};

std::unique_ptr<CFolderLock> CFolderLock::Take(const std::string& path)
{
    // A file that is shared with nobody is its own lock.
    const HANDLE file = CreateFileW(std::filesystem::u8path(path).c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return nullptr;
    return std::unique_ptr<CFolderLock>(new CFolderLock(path, std::make_unique<Handle>(file)));
}

CFolderLock::CFolderLock(std::string path, std::unique_ptr<Handle> handle)
    : path_(std::move(path)), handle_(std::move(handle))
{
}

CFolderLock::~CFolderLock()
{
    // An open file can't be removed here; whoever takes it in between removes it just as well.
    handle_.reset();
    DeleteFileW(std::filesystem::u8path(path_).c_str());
}

}  // namespace ZellPictureLoader
