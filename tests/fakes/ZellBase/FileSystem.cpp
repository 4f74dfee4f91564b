#include "ZellBase/FileSystem.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"
#include "NQX/NQX.h"

#include <QString>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

// The real file system stands underneath, so that what the library leaves behind can be looked at.
namespace Zell::Base::FileSystem {
namespace {

namespace fs = std::filesystem;

int Refused()
{
    NQX_SetLastError(fakes::TheScript().system_error);
    return -1;
}

int Result(const std::error_code& error)
{
    if (!error)
        return 0;
    NQX_SetLastError(error.value());
    return -1;
}

void* NoHandle()
{
    return NoFile();
}

// Names of no UTF-8 have no other form where names are wide.
fs::path PathOf(const std::string& text)
{
    try {
        return fs::u8path(text);
    } catch (const fs::filesystem_error&) {
        return QString::fromUtf8(text.c_str()).toStdWString();
    }
}

template <typename Iterator>
void ListFiles(const SearchFileParam& search, std::vector<FileInfo>& files)
{
    std::error_code error;
    for (Iterator it(PathOf(search.folder), error), end; !error && it != end; it.increment(error)) {
        std::error_code ignored;
        if (it->is_directory(ignored) && !search.with_folders)
            continue;
        FileInfo info;
        info.name = it->path().filename().u8string();
        info.path = it->path().generic_u8string();
        info.size = it->is_directory(ignored) ? 0 : static_cast<long long>(it->file_size(ignored));
        files.push_back(info);
    }
}

}  // namespace

int DirectoryExists(const char* path)
{
    std::error_code ignored;
    const bool exists = fakes::TheScript().every_folder_exists || fs::is_directory(PathOf(path), ignored);
    if (!fakes::Call("DirectoryExists", std::string(path) + (exists ? "" : " -> missing")))
        return Refused();
    return exists ? 0 : -1;
}

int MakeFullDir(const char* path)
{
    if (!fakes::Call("MakeFullDir", path))
        return Refused();
    std::error_code error;
    fs::create_directories(PathOf(path), error);
    return Result(error);
}

void* OpenFile(const char* path, unsigned int flags, unsigned int attributes)
{
    const std::string numbers = " " + std::to_string(flags) + " " + std::to_string(attributes);
    if (!fakes::Call("OpenFile", path + numbers)) {
        Refused();
        return NoHandle();
    }
    std::FILE* file = std::fopen(path, flags == kOpenAppend ? "ab" : "wb");
    if (file == nullptr) {
        NQX_SetLastError(errno);
        return NoHandle();
    }
    return file;
}

int WriteFile(void* handle, void* data, unsigned int size, unsigned int* written)
{
    if (!fakes::Call("WriteFile", std::to_string(size)))
        return Refused();
    const std::size_t count = std::fwrite(data, 1, size, static_cast<std::FILE*>(handle));
    if (written != nullptr)
        *written = static_cast<unsigned int>(count);
    return count == size ? 0 : -1;
}

int CloseFile(void* handle)
{
    const bool succeeds = fakes::Call("CloseFile", "");
    const int result = std::fclose(static_cast<std::FILE*>(handle));
    return succeeds ? result : Refused();
}

int DeleteFileW(const char* path)
{
    if (!fakes::Call("DeleteFileW", path))
        return Refused();
    std::error_code error;
    if (!fs::remove(PathOf(path), error) && !error)
        error = std::make_error_code(std::errc::no_such_file_or_directory);
    return Result(error);
}

int CopyFileW(const char* source, const char* target, int fail_if_exists)
{
    const std::string names = std::string(source) + " " + target + " " + std::to_string(fail_if_exists);
    if (!fakes::Call("CopyFileW", names))
        return Refused();
    std::error_code error;
    fs::copy_file(PathOf(source), PathOf(target),
                  fail_if_exists == 0 ? fs::copy_options::overwrite_existing : fs::copy_options::none, error);
    return Result(error);
}

int RenameFile(const char* source, const char* target)
{
    if (!fakes::Call("RenameFile", std::string(source) + " " + target))
        return Refused();
    std::error_code error;
    fs::rename(PathOf(source), PathOf(target), error);
    return Result(error);
}

int RemoveDirRecursively(const char* path)
{
    if (!fakes::Call("RemoveDirRecursively", path))
        return Refused();
    std::error_code error;
    fs::remove_all(PathOf(path), error);
    return Result(error);
}

int GetCurExePath(char* buffer, int size)
{
    if (!fakes::Call("GetCurExePath", std::to_string(size)))
        return Refused();
    std::snprintf(buffer, static_cast<std::size_t>(size), "%s", fakes::TheScript().exe_path.c_str());
    return 0;
}

int GetFilesInDir(const SearchFileParam& search, std::vector<FileInfo>& files)
{
    const std::string flags =
        std::string(search.recursive ? " recursive" : "") + (search.with_folders ? " with folders" : "");
    if (!fakes::Call("GetFilesInDir", search.folder + flags))
        return Refused();
    std::error_code ignored;
    if (!fs::is_directory(PathOf(search.folder), ignored))
        return -1;
    if (search.recursive)
        ListFiles<fs::recursive_directory_iterator>(search, files);
    else
        ListFiles<fs::directory_iterator>(search, files);
    return 0;
}

}  // namespace Zell::Base::FileSystem
