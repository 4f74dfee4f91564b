#include "ZellBase/FileSystem.h"

#include "NQX/NQX.h"
#include "NQXHost/Path.h"
#include "NQXHost/SystemText.h"
#include "Platform/Files.h"

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace Zell::Base::FileSystem {
namespace {

namespace fs = std::filesystem;

// The operation's result; a failure leaves its reason with the thread.
int Result(int error)
{
    if (error != 0)
        NQX_SetLastError(error);
    return error;
}

bool IsSeparator(char letter)
{
    constexpr auto own = static_cast<char>(fs::path::preferred_separator);
    return letter == '/' || letter == own;  // NOLINT(misc-redundant-expression): another letter on Windows
}

std::string WithSeparator(const std::string& folder)
{
    return folder.empty() || IsSeparator(folder.back()) ? folder : folder + "/";
}

// With a separator at its end a link would stand for its target.
std::string WithoutSeparator(std::string folder)
{
    while (folder.size() > 1 && IsSeparator(folder.back()))
        folder.pop_back();
    return folder;
}

int FolderError(const std::string& path)
{
    details::FileFacts facts;
    const int error = details::ReadFileFacts(path, facts);
    if (error != 0)
        return error;
    return facts.is_folder ? 0 : details::kErrorNoFolder;
}

// Goes through a folder and, if asked, those below. A part that can't be read is the walk's error, but the
// rest is listed.
class Walk
{
public:
    Walk(const SearchFileParam& search, std::vector<FileInfo>& files) : search_(search), files_(files) {}

    int Run()
    {
        std::vector<std::string> folders = {WithSeparator(search_.folder)};
        while (!folders.empty()) {
            const std::string folder = folders.back();
            folders.pop_back();
            List(folder, folders);
        }
        return error_;
    }

private:
    void List(const std::string& folder, std::vector<std::string>& folders)
    {
        std::vector<std::string> names;
        Keep(details::ListNames(folder, names));
        for (const std::string& name : names)
            Add(folder, name, folders);
    }

    void Add(const std::string& folder, const std::string& name, std::vector<std::string>& folders)
    {
        FileInfo file;
        file.name = name;
        file.path = folder + name;
        details::FileFacts facts;
        const int error = details::ReadFileFacts(file.path, facts);
        if (error != 0)
            return Keep(error);
        // A link may lead back up, so it is listed and not followed.
        if (facts.is_folder && !facts.is_link && search_.recursive)
            folders.push_back(file.path + "/");
        if (facts.is_folder && !search_.with_folders)
            return;
        file.size = facts.is_folder ? 0 : facts.size;
        file.time = facts.time;
        files_.push_back(std::move(file));
    }

    // What has gone away since it was listed is no error.
    void Keep(int error)
    {
        if (error != 0 && error != details::kErrorNotThere)
            error_ = error;
    }

    const SearchFileParam& search_;
    std::vector<FileInfo>& files_;
    int error_ = 0;
};

}  // namespace

int DirectoryExists(const char* path)
{
    return Result(FolderError(NQX_PathText(path)));
}

int MakeFullDir(const char* path)
{
    const std::string folder = NQX_PathText(path);
    std::error_code error;
    fs::create_directories(NQX_Path(folder), error);
    if (error == std::errc::not_a_directory)
        return Result(details::kErrorNoFolder);  // some libraries make this one up themselves
    return Result(error ? error.value() : FolderError(folder));
}

void* OpenFile(const char* path, unsigned int flags, unsigned int attributes)
{
    void* handle = NoFile();
    if (flags == kOpenAppend || flags == kOpenTruncate)
        Result(details::OpenForWriting(NQX_PathText(path), flags == kOpenTruncate, attributes, handle));
    else
        Result(details::kErrorBadArgument);
    return handle;
}

int WriteFile(void* handle, void* data, unsigned int size, unsigned int* written)
{
    unsigned int done = 0;
    int error = details::kErrorBadArgument;
    if (handle != NoFile() && (data != nullptr || size == 0))
        error = details::WriteWhole(handle, static_cast<const char*>(data), size, done);
    if (written != nullptr)
        *written = done;
    return Result(error);
}

int CloseFile(void* handle)
{
    return Result(handle == NoFile() ? details::kErrorBadArgument : details::CloseHandleOf(handle));
}

int DeleteFileW(const char* path)
{
    return Result(details::RemoveFile(NQX_PathText(path)));
}

int CopyFileW(const char* source, const char* target, int fail_if_exists)
{
    return Result(details::CopyWhole(NQX_PathText(source), NQX_PathText(target), fail_if_exists != 0));
}

int RenameFile(const char* source, const char* target)
{
    const std::string from = NQX_PathText(source);
    const std::string to = NQX_PathText(target);
    bool is_other_system = false;
    int error = details::Rename(from, to, is_other_system);
    if (is_other_system) {
        error = details::CopyWhole(from, to, false);
        if (error == 0)
            error = details::RemoveFile(from);
    }
    return Result(error);
}

int RemoveDirRecursively(const char* path)
{
    const std::string folder = WithoutSeparator(NQX_PathText(path));
    const int missing = FolderError(folder);
    if (missing != 0)
        return Result(missing);
    return Result(details::RemoveWholeFolder(folder));
}

int GetCurExePath(char* buffer, int size)
{
    if (buffer == nullptr || size <= 0)
        return Result(details::kErrorBadArgument);
    const std::string program = details::ProgramPath();
    const std::size_t end = program.rfind('/') + 1;
    if (program.empty() || end == 0)
        return Result(details::kErrorNotThere);
    if (end >= static_cast<std::size_t>(size))
        return Result(details::kErrorTooSmall);
    std::memcpy(buffer, program.data(), end);
    buffer[end] = '\0';
    return 0;
}

int GetFilesInDir(const SearchFileParam& search, std::vector<FileInfo>& files)
{
    SearchFileParam clean = search;
    clean.folder = NQX_PathText(search.folder.c_str());
    const int missing = FolderError(clean.folder);
    if (missing != 0)
        return Result(missing);
    return Result(Walk(clean, files).Run());
}

}  // namespace Zell::Base::FileSystem
