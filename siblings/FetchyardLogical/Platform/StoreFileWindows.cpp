#include "Platform/StoreFile.h"

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace FetchyardLogical::details {

struct OpenedFile
{
    explicit OpenedFile(HANDLE open_file) : file(open_file) {}
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;
    ~OpenedFile() { CloseHandle(file); }

    const HANDLE file;
};

namespace {

constexpr std::size_t kMostAtOnce = 1U << 30;

std::string SystemWords(DWORD error)
{
    return std::system_category().message(static_cast<int>(error));
}

// Handles are not inherited, so tools that the client starts don't keep the file.
HANDLE OpenOwn(const std::string& path, DWORD share)
{
    return CreateFileW(std::filesystem::u8path(path).c_str(), GENERIC_READ | GENERIC_WRITE, share, nullptr,
                       OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

std::unique_ptr<StoreFile> StoreFile::Open(const std::string& path, std::string& reason)
{
    const HANDLE file = OpenOwn(path, FILE_SHARE_READ);
    if (file == INVALID_HANDLE_VALUE) {
        reason = SystemWords(GetLastError());
        return nullptr;
    }
    return std::unique_ptr<StoreFile>(new StoreFile(std::make_unique<OpenedFile>(file)));
}

StoreFile::StoreFile(std::unique_ptr<OpenedFile> opened) : opened_(std::move(opened)) {}
StoreFile::~StoreFile() = default;

// Written data is in the system's cache when the call returns, which outlives the process.
bool StoreFile::WriteAt(std::uint64_t offset, const std::string& bytes, std::string& reason)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const std::uint64_t place = offset + done;
        OVERLAPPED at = {};
        at.Offset = static_cast<DWORD>(place);
        at.OffsetHigh = static_cast<DWORD>(place >> 32);
        const auto size = static_cast<DWORD>(std::min(bytes.size() - done, kMostAtOnce));
        DWORD written = 0;
        if (!WriteFile(opened_->file, bytes.data() + done, size, &written, &at) || written == 0) {
            reason = SystemWords(GetLastError());
            return false;
        }
        done += written;
    }
    return true;
}

void StoreFile::Cut(std::uint64_t size)
{
    FILE_END_OF_FILE_INFO end = {};
    end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
    SetFileInformationByHandle(opened_->file, FileEndOfFileInfo, &end, sizeof(end));
}

// A file that is shared with nobody is its own lock.
std::unique_ptr<StoreLock> StoreLock::Take(const std::string& path, bool& in_use, std::string& reason)
{
    const HANDLE file = OpenOwn(path, 0);
    if (file == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        in_use = error == ERROR_SHARING_VIOLATION;
        reason = SystemWords(error);
        return nullptr;
    }
    in_use = false;
    return std::unique_ptr<StoreLock>(new StoreLock(std::make_unique<OpenedFile>(file)));
}

StoreLock::StoreLock(std::unique_ptr<OpenedFile> opened) : opened_(std::move(opened)) {}
StoreLock::~StoreLock() = default;

}  // namespace FetchyardLogical::details
