#include "Platform/StoreFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace FetchyardLogical::details {

struct OpenedFile
{
    explicit OpenedFile(int open_file) : file(open_file) {}
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;
    ~OpenedFile() { close(file); }

    const int file;
};

namespace {

std::string SystemWords()
{
    return std::generic_category().message(errno);
}

// Tools that the client starts must not keep the file, or the lock on it, when the client is gone.
int OpenOwn(const std::string& path)
{
    int descriptor = -1;
    do {
        descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    } while (descriptor == -1 && errno == EINTR);
    return descriptor;
}

}  // namespace

std::unique_ptr<StoreFile> StoreFile::Open(const std::string& path, std::string& reason)
{
    const int file = OpenOwn(path);
    if (file < 0) {
        reason = SystemWords();
        return nullptr;
    }
    return std::unique_ptr<StoreFile>(new StoreFile(std::make_unique<OpenedFile>(file)));
}

StoreFile::StoreFile(std::unique_ptr<OpenedFile> opened) : opened_(std::move(opened)) {}
StoreFile::~StoreFile() = default;

bool StoreFile::WriteAt(std::uint64_t offset, const std::string& bytes, std::string& reason)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = pwrite(opened_->file, bytes.data() + done, bytes.size() - done,
                                       static_cast<off_t>(offset + done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            reason = SystemWords();
            return false;
        }
        done += static_cast<std::size_t>(written);
    }
    return true;
}

void StoreFile::Cut(std::uint64_t size)
{
    while (ftruncate(opened_->file, static_cast<off_t>(size)) == -1 && errno == EINTR) {
    }
}

std::unique_ptr<StoreLock> StoreLock::Take(const std::string& path, bool& in_use, std::string& reason)
{
    in_use = false;
    const int file = OpenOwn(path);
    if (file < 0) {
        reason = SystemWords();
        return nullptr;
    }
    auto opened = std::make_unique<OpenedFile>(file);
    if (flock(file, LOCK_EX | LOCK_NB) == 0)
        return std::unique_ptr<StoreLock>(new StoreLock(std::move(opened)));
    in_use = errno == EWOULDBLOCK;
    reason = SystemWords();
    return nullptr;
}

StoreLock::StoreLock(std::unique_ptr<OpenedFile> opened) : opened_(std::move(opened)) {}
StoreLock::~StoreLock() = default;

}  // namespace FetchyardLogical::details
