#include "NQXHost/Path.h"
#include "NQXHost/WideText.h"
#include "Platform/Files.h"
#include "ZellBase/Util.h"

#include <windows.h>

#include <cstdint>
#include <filesystem>

namespace Zell::Base::details {
namespace {

// The system counts 100 ns from 1601.
long long ToUnixTime(const FILETIME& time)
{
    const auto ticks = (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    return static_cast<long long>(ticks / 10000000u) - 11644473600LL;
}

int LastError()
{
    return static_cast<int>(GetLastError());
}

std::string NameBeside(const std::string& target)
{
    const std::size_t slash = target.find_last_of("/\\");
    const std::string folder = slash == std::string::npos ? "" : target.substr(0, slash + 1);
    return folder + "." + GuidUtil::CreateGuid() + ".part";
}

}  // namespace

const int kErrorNotThere = ERROR_FILE_NOT_FOUND;
const int kErrorNoFolder = ERROR_DIRECTORY;
const int kErrorBadArgument = ERROR_INVALID_PARAMETER;
const int kErrorTooSmall = ERROR_INSUFFICIENT_BUFFER;

int ReadFileFacts(const std::string& path, FileFacts& facts)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (GetFileAttributesExW(NQX_Path(path).c_str(), GetFileExInfoStandard, &data) == 0)
        return LastError();
    facts.is_folder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    facts.is_link = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    facts.size =
        static_cast<long long>((static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow);
    facts.time = ToUnixTime(data.ftLastWriteTime);
    return 0;
}

int OpenForWriting(const std::string& path, bool truncate, unsigned int attributes, void*& handle)
{
    const DWORD access = truncate ? GENERIC_WRITE : FILE_APPEND_DATA | SYNCHRONIZE;
    HANDLE file = CreateFileW(NQX_Path(path).c_str(), access, FILE_SHARE_READ, nullptr,
                              truncate ? CREATE_ALWAYS : OPEN_ALWAYS, attributes, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return LastError();
    handle = file;
    return 0;
}

int WriteWhole(void* handle, const char* data, unsigned int size, unsigned int& written)
{
    DWORD done = 0;
    const bool good = ::WriteFile(handle, data, size, &done, nullptr) != 0;
    written = done;
    if (!good)
        return LastError();
    return done == size ? 0 : ERROR_DISK_FULL;
}

int CloseHandleOf(void* handle)
{
    return CloseHandle(handle) != 0 ? 0 : LastError();
}

int RemoveFile(const std::string& path)
{
    return ::DeleteFileW(NQX_Path(path).c_str()) != 0 ? 0 : LastError();
}

int CopyWhole(const std::string& source, const std::string& target, bool fail_if_exists)
{
    const std::filesystem::path wide_target = NQX_Path(target);
    const std::filesystem::path name = NQX_Path(NameBeside(target));
    const DWORD flags = MOVEFILE_WRITE_THROUGH | (fail_if_exists ? 0u : MOVEFILE_REPLACE_EXISTING);
    int error = 0;
    if (::CopyFileW(NQX_Path(source).c_str(), name.c_str(), TRUE) == 0 ||
        MoveFileExW(name.c_str(), wide_target.c_str(), flags) == 0)
        error = LastError();
    if (error != 0)
        ::DeleteFileW(name.c_str());
    return error;
}

int Rename(const std::string& source, const std::string& target, bool& is_other_system)
{
    is_other_system = false;
    if (MoveFileExW(NQX_Path(source).c_str(), NQX_Path(target).c_str(), MOVEFILE_REPLACE_EXISTING) != 0)
        return 0;
    is_other_system = GetLastError() == ERROR_NOT_SAME_DEVICE;
    return LastError();
}

// By the system's own calls: a directory iterator of GCC's library finds nothing behind 260 letters.
int ListNames(const std::string& folder, std::vector<std::string>& names)
{
    WIN32_FIND_DATAW found = {};
    const HANDLE search = FindFirstFileW(NQX_Path(folder + "/*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return LastError();
    do {
        const std::wstring name = found.cFileName;
        if (name != L"." && name != L"..")
            names.push_back(NQX_NarrowText(name));
    } while (FindNextFileW(search, &found) != 0);
    const DWORD end = GetLastError();
    FindClose(search);
    return end == ERROR_NO_MORE_FILES ? 0 : static_cast<int>(end);
}

int RemoveWholeFolder(const std::string& folder)
{
    FileFacts facts;
    int error = ReadFileFacts(folder, facts);
    if (error != 0 || !facts.is_folder)
        return error != 0 ? error : RemoveFile(folder);
    std::vector<std::string> names;
    if (!facts.is_link)
        error = ListNames(folder, names);
    for (const std::string& name : names) {
        const int failed = RemoveWholeFolder(folder + "/" + name);
        error = error != 0 ? error : failed;
    }
    if (RemoveDirectoryW(NQX_Path(folder).c_str()) == 0 && error == 0)
        error = LastError();
    return error;
}

std::string ProgramPath()
{
    std::wstring path(32768, L'\0');
    const DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    path.resize(size < path.size() ? size : 0);
    std::string text = NQX_NarrowText(path);
    for (char& letter : text) {
        if (letter == '\\')
            letter = '/';
    }
    return text;
}

}  // namespace Zell::Base::details
