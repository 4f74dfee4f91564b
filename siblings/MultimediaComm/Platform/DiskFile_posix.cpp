#include "Platform/DiskFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace Zell::MultimediaComm {
namespace {

Stream StreamOf(int descriptor, const char* mode)
{
    if (descriptor < 0)
        return nullptr;
    struct stat facts = {};
    if (fstat(descriptor, &facts) == 0 && S_ISDIR(facts.st_mode)) {
        close(descriptor);
        errno = EISDIR;
        return nullptr;
    }
    Stream stream(fdopen(descriptor, mode));
    if (!stream)
        close(descriptor);
    return stream;
}

}  // namespace

Stream OpenToRead(const std::string& path)
{
    return StreamOf(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK), "rb");
}

Stream OpenToWrite(const std::string& path)
{
    return StreamOf(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666), "wb");
}

Stream CreateWorkStream(const std::string& path, bool is_fleeting)
{
    const mode_t mode = is_fleeting ? 0600 : 0666;
    Stream stream = StreamOf(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode), "w+b");
    if (stream && is_fleeting && unlink(path.c_str()) != 0)
        return nullptr;
    return stream;
}

bool SeekTo(std::FILE* stream, std::int64_t place)
{
    return fseeko(stream, place, SEEK_SET) == 0;
}

std::int64_t SizeOf(std::FILE* stream)
{
    struct stat facts = {};
    return fstat(fileno(stream), &facts) == 0 ? facts.st_size : -1;
}

bool Close(Stream stream)
{
    return std::fclose(stream.release()) == 0;
}

int LastSystemError()
{
    return errno;
}

std::string SystemErrorText(int error)
{
    return std::system_category().message(error);
}

bool RenameEntry(const std::string& source, const std::string& target, bool& is_other_system)
{
    is_other_system = false;
    if (rename(source.c_str(), target.c_str()) == 0)
        return true;
    is_other_system = errno == EXDEV;
    return false;
}

}  // namespace Zell::MultimediaComm
