#include "Platform/SecretFile.h"
#include "ZellBase/Util.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace ZellTaskKit {
namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

std::string LastFailure()
{
    return std::generic_category().message(errno);
}

class Descriptor
{
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (number_ >= 0)
            ::close(number_);
    }
    int Number() const { return number_; }

private:
    int number_;
};

bool WriteWhole(int descriptor, const std::string& content)
{
    std::size_t written = 0;
    while (written < content.size()) {
        const ssize_t bytes = ::write(descriptor, content.data() + written, content.size() - written);
        if (bytes < 0 && errno == EINTR)
            continue;
        if (bytes <= 0)
            return false;
        written += static_cast<std::size_t>(bytes);
    }
    return ::fsync(descriptor) == 0;
}

bool WriteOwnersFile(const std::string& path, const std::string& content)
{
    const Descriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly));
    return file.Number() >= 0 && WriteWhole(file.Number(), content);
}

// A link takes a name only if it is free. Some file systems have none; there the rename that replaces is used
// where the name looks free.
int TakeName(const std::string& temporary, const std::string& path)
{
    if (::link(temporary.c_str(), path.c_str()) == 0)
        return 0;
    if (errno != EPERM && errno != ENOTSUP && errno != ENOSYS)
        return -1;
    if (SecretFileExists(path)) {
        errno = EEXIST;
        return -1;
    }
    return ::rename(temporary.c_str(), path.c_str());
}

}  // namespace

bool SecretFileExists(const std::string& path)
{
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0;
}

SecretFileCreation CreateSecretFile(const std::string& path, const std::string& content, std::string& failure)
{
    const std::string temporary = path + "." + Zell::Base::GuidUtil::CreateGuid();
    if (!WriteOwnersFile(temporary, content)) {
        failure = LastFailure();
        ::unlink(temporary.c_str());
        return SecretFileCreation::Failed;
    }
    const int taken = TakeName(temporary, path);
    const int reason = errno;
    failure = taken == 0 ? std::string() : LastFailure();
    ::unlink(temporary.c_str());
    if (taken == 0)
        return SecretFileCreation::Created;
    if (reason != EEXIST)
        return SecretFileCreation::Failed;
    failure.clear();
    return SecretFileCreation::WasThere;
}

bool ReadSecretFile(const std::string& path, SecretFile& file)
{
    const Descriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status = {};
    std::array<char, 4096> buffer{};
    ssize_t bytes = -1;
    if (descriptor.Number() >= 0 && ::fstat(descriptor.Number(), &status) == 0)
        bytes = ::read(descriptor.Number(), buffer.data(), buffer.size());
    if (bytes < 0) {
        file.failure = LastFailure();
        return false;
    }
    file.content.assign(buffer.data(), static_cast<std::size_t>(bytes));
    file.others_may_read = (status.st_mode & (S_IRWXG | S_IRWXO)) != 0;
    return true;
}

}  // namespace ZellTaskKit
