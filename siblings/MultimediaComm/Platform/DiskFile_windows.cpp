#include "NQXHost/WideText.h"
#include "Platform/DiskFile.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <system_error>

namespace Zell::MultimediaComm {
namespace {

Stream StreamOf(HANDLE file, int flags, const char* mode)
{
    if (file == INVALID_HANDLE_VALUE)
        return nullptr;
    const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(file), flags | _O_BINARY);
    if (descriptor < 0) {
        CloseHandle(file);
        return nullptr;
    }
    Stream stream(_fdopen(descriptor, mode));
    if (!stream)
        _close(descriptor);
    return stream;
}

}  // namespace

Stream OpenToRead(const std::string& path)
{
    return StreamOf(CreateFileW(NQX_WideText(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr),
                    _O_RDONLY, "rb");
}

Stream OpenToWrite(const std::string& path)
{
    return StreamOf(CreateFileW(NQX_WideText(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr),
                    0, "wb");
}

// The folder is the user's own and lends the file its rights.
Stream CreateWorkStream(const std::string& path, bool is_fleeting)
{
    const DWORD attributes =
        is_fleeting ? FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE : FILE_ATTRIBUTE_NORMAL;
    return StreamOf(CreateFileW(NQX_WideText(path).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_DELETE,
                                nullptr, CREATE_NEW, attributes, nullptr),
                    0, "w+b");
}

bool SeekTo(std::FILE* stream, std::int64_t place)
{
    return _fseeki64(stream, place, SEEK_SET) == 0;
}

std::int64_t SizeOf(std::FILE* stream)
{
    return _filelengthi64(_fileno(stream));
}

bool Close(Stream stream)
{
    return std::fclose(stream.release()) == 0;
}

int LastSystemError()
{
    return static_cast<int>(GetLastError());
}

std::string SystemErrorText(int error)
{
    return std::system_category().message(error);
}

bool RenameEntry(const std::string& source, const std::string& target, bool& is_other_system)
{
    is_other_system = false;
    if (MoveFileExW(NQX_WideText(source).c_str(), NQX_WideText(target).c_str(), MOVEFILE_REPLACE_EXISTING) !=
        0)
        return true;
    is_other_system = GetLastError() == ERROR_NOT_SAME_DEVICE;
    return false;
}

}  // namespace Zell::MultimediaComm
