#include "Platform/Files.h"
#include "Platform/PosixDescriptor.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace Zell::Base::details {
namespace {

void* ToHandle(int descriptor)
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a number in a pointer, which nobody follows
    return reinterpret_cast<void*>(static_cast<std::intptr_t>(descriptor));
}

int ToDescriptor(void* handle)
{
    return static_cast<int>(reinterpret_cast<std::intptr_t>(handle));
}

}  // namespace

const int kErrorNotThere = ENOENT;
const int kErrorNoFolder = ENOTDIR;
const int kErrorBadArgument = EINVAL;
const int kErrorTooSmall = ERANGE;

int ReadFileFacts(const std::string& path, FileFacts& facts)
{
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0)
        return errno;
    facts.is_link = S_ISLNK(status.st_mode);
    if (facts.is_link && stat(path.c_str(), &status) != 0)
        return errno;
    facts.is_folder = S_ISDIR(status.st_mode);
    facts.size = status.st_size;
    facts.time = status.st_mtime;
    return 0;
}

int OpenForWriting(const std::string& path, bool truncate, unsigned int /*attributes*/, void*& handle)
{
    const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (truncate ? O_TRUNC : O_APPEND);
    int descriptor = -1;
    do {
        descriptor = open(path.c_str(), flags, 0666);
    } while (descriptor == -1 && errno == EINTR);
    // In a process without standard streams the first numbers are free; as a handle 0 would look like none.
    if (descriptor >= 0 && descriptor <= STDERR_FILENO) {
        const int low = descriptor;
        descriptor = fcntl(low, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        const int error = errno;
        close(low);
        errno = error;
    }
    if (descriptor == -1)
        return errno;
    handle = ToHandle(descriptor);
    return 0;
}

int WriteWhole(void* handle, const char* data, unsigned int size, unsigned int& written)
{
    std::size_t done = 0;
    const int error = WriteAll(ToDescriptor(handle), data, size, done);
    written = static_cast<unsigned int>(done);
    return error;
}

int CloseHandleOf(void* handle)
{
    // After EINTR the descriptor is gone all the same.
    return close(ToDescriptor(handle)) == 0 || errno == EINTR ? 0 : errno;
}

int RemoveFile(const std::string& path)
{
    return unlink(path.c_str()) == 0 ? 0 : errno;
}

int Rename(const std::string& source, const std::string& target, bool& is_other_system)
{
    is_other_system = false;
    if (rename(source.c_str(), target.c_str()) == 0)
        return 0;
    is_other_system = errno == EXDEV;
    return errno;
}

int ListNames(const std::string& folder, std::vector<std::string>& names)
{
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
        names.push_back(entry->path().filename().string());
    return error.value();
}

int RemoveWholeFolder(const std::string& folder)
{
    std::error_code error;
    std::filesystem::remove_all(folder, error);
    return error.value();
}

std::string ProgramPath()
{
    std::string path(PATH_MAX, '\0');
    const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
    path.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return path;
}

}  // namespace Zell::Base::details
