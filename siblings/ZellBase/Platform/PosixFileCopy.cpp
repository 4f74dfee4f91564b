#include "Platform/Files.h"
#include "Platform/PosixDescriptor.h"
#include "ZellBase/Util.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <vector>

namespace Zell::Base::details {
namespace {

constexpr std::size_t kPiece = std::size_t{1024} * 1024;

// 0 or the system's error; ENOSYS and its like mean that the file systems do not offer it.
int CopyInKernel(int source, int target)
{
    for (;;) {
        const ssize_t size = copy_file_range(source, nullptr, target, nullptr, 1024 * kPiece, 0);
        if (size == 0)
            return 0;
        if (size < 0 && errno != EINTR)
            return errno;
    }
}

int CopyByHand(int source, int target)
{
    std::vector<char> piece(kPiece);
    for (;;) {
        const ssize_t size = read(source, piece.data(), piece.size());
        if (size == 0)
            return 0;
        if (size < 0 && errno != EINTR)
            return errno;
        std::size_t done = 0;
        const int error = size < 0 ? 0 : WriteAll(target, piece.data(), static_cast<std::size_t>(size), done);
        if (error != 0)
            return error;
    }
}

bool IsNotOffered(int error)
{
    return error == ENOSYS || error == EXDEV || error == EINVAL || error == EOPNOTSUPP || error == EPERM;
}

// Both stand where the kernel stopped, so the rest can be copied by hand. Some file systems (of processes,
// for one) tell a size of 0 for files that have content, which the kernel then takes for the end: the copy by
// hand looks once more.
int CopyContent(int source, int target)
{
    const int error = CopyInKernel(source, target);
    return error == 0 || IsNotOffered(error) ? CopyByHand(source, target) : error;
}

// A free name in the target's folder, so that the rename stays within one file system.
std::string NameBeside(const std::string& target)
{
    const std::size_t slash = target.rfind('/');
    const std::string folder = slash == std::string::npos ? "" : target.substr(0, slash + 1);
    return folder + "." + GuidUtil::CreateGuid() + ".part";
}

int CopyTo(int source, mode_t mode, const std::string& name)
{
    Descriptor target(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode & 0777));
    if (!target.IsOpen())
        return errno;
    const int error = CopyContent(source, target.Get());
    const int close_error = target.Close();
    return error != 0 ? error : close_error;
}

}  // namespace

int Descriptor::Close()
{
    const int number = number_;
    number_ = -1;
    return number < 0 || close(number) == 0 || errno == EINTR ? 0 : errno;
}

int WriteAll(int descriptor, const char* data, std::size_t size, std::size_t& done)
{
    done = 0;
    while (done < size) {
        const ssize_t written = write(descriptor, data + done, size - done);
        if (written > 0)
            done += static_cast<std::size_t>(written);
        else if (written == 0)
            return ENOSPC;
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

int CopyWhole(const std::string& source, const std::string& target, bool fail_if_exists)
{
    const Descriptor from(open(source.c_str(), O_RDONLY | O_CLOEXEC));
    if (!from.IsOpen())
        return errno;
    struct stat status = {};
    if (fstat(from.Get(), &status) != 0)
        return errno;
    if (!S_ISREG(status.st_mode))
        return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    struct stat there = {};
    if (fail_if_exists && lstat(target.c_str(), &there) == 0)
        return EEXIST;
    const std::string name = NameBeside(target);
    int error = CopyTo(from.Get(), status.st_mode, name);
    if (error == 0 && rename(name.c_str(), target.c_str()) != 0)
        error = errno;
    if (error != 0)
        unlink(name.c_str());
    return error;
}

}  // namespace Zell::Base::details
