#include "Picture.h"

#include "NQX/NQX.h"
#include "NQXHost/Path.h"
#include "ZellBase/FileSystem.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <ios>
#include <utility>

namespace ZellPictureLoader {
namespace {

namespace FileSystem = Zell::Base::FileSystem;
using Zell::Base::Error::ErrorCode;

constexpr std::size_t kLargestInMemory = 512u << 10;
constexpr std::size_t kLargestWrite = 1u << 30;

// The reason of the call that has just failed.
ErrorCode SystemError()
{
    const int error = NQX_GetLastError();
    return ErrorCode(0, error != 0 ? error : EIO);
}

bool IsOpen(const void* handle)
{
    return handle != FileSystem::NoFile();
}

int WriteWhole(void* handle, const char* data, std::size_t size)
{
    while (size > 0) {
        const std::size_t piece = std::min(size, kLargestWrite);
        unsigned int written = 0;
        const int result = FileSystem::WriteFile(handle, const_cast<char*>(data),
                                                 static_cast<unsigned int>(piece), &written);
        if (result != 0)
            return result;
        data += piece;
        size -= piece;
    }
    return 0;
}

ErrorCode WriteNewFile(const std::string& path, const std::string& bytes)
{
    void* handle =
        FileSystem::OpenFile(path.c_str(), FileSystem::kOpenTruncate, FileSystem::kAttributesPlain);
    if (!IsOpen(handle))
        return SystemError();
    const bool written = WriteWhole(handle, bytes.data(), bytes.size()) == 0;
    ErrorCode error = written ? ErrorCode() : SystemError();
    // Some file systems tell only now that the disk is full.
    if (FileSystem::CloseFile(handle) != 0 && written)
        error = SystemError();
    if (error.iSecondCode != 0)
        FileSystem::DeleteFileW(path.c_str());
    return error;
}

}  // namespace

CPicture::CPicture(std::string bytes) : bytes_(std::move(bytes)), size_(bytes_.size()) {}

CPicture::CPicture(std::shared_ptr<CCacheFolder> folder, std::string file, std::uint64_t size)
    : folder_(std::move(folder)), file_(std::move(file)), size_(size)
{
}

CPicture::~CPicture()
{
    if (is_file())
        FileSystem::DeleteFileW(file_.c_str());
}

ErrorCode CPicture::ReadInto(std::string& data) const
{
    if (!is_file()) {
        data = bytes_;
        return ErrorCode();
    }
    std::string bytes(static_cast<std::size_t>(size_), '\0');
    errno = 0;
    std::ifstream file(NQX_Path(file_), std::ios::binary);
    if (!file.read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
        return ErrorCode(0, errno != 0 ? errno : EIO);
    data = std::move(bytes);
    return ErrorCode();
}

ErrorCode CPicture::CopyTo(const std::string& path) const
{
    if (!is_file())
        return WriteNewFile(path, bytes_);
    if (FileSystem::CopyFileW(file_.c_str(), path.c_str(), 1) != 0)
        return SystemError();
    return ErrorCode();
}

ErrorCode CPicture::MoveTo(const std::string& path)
{
    if (FileSystem::RenameFile(file_.c_str(), path.c_str()) != 0)
        return SystemError();
    folder_.reset();
    return ErrorCode();
}

ErrorCode PlaceCopy(const CPicture& picture, CCacheFolder& folder, const std::string& path)
{
    const std::string copy = folder.NewFile();
    ErrorCode error = picture.CopyTo(copy);
    if (error.iSecondCode != 0)
        return error;
    if (FileSystem::RenameFile(copy.c_str(), path.c_str()) != 0) {
        error = SystemError();
        FileSystem::DeleteFileW(copy.c_str());
    }
    return error;
}

CPictureReceiver::CPictureReceiver(std::shared_ptr<CCacheFolder> folder) : folder_(std::move(folder)) {}

CPictureReceiver::~CPictureReceiver()
{
    CloseFile();
    RemoveFile();
}

bool CPictureReceiver::Take(const char* data, std::size_t size)
{
    if (error_.iSecondCode != 0)
        return false;
    size_ += size;
    if (handle_ != nullptr)
        return Write(data, size);
    if (bytes_.size() + size <= kLargestInMemory) {
        bytes_.append(data, size);
        return true;
    }
    return OpenFile() && Write(bytes_.data(), bytes_.size()) && Write(data, size);
}

std::shared_ptr<CPicture> CPictureReceiver::Finish()
{
    CloseFile();
    if (error_.iSecondCode != 0)
        RemoveFile();
    if (error_.iSecondCode != 0 || size_ == 0)
        return nullptr;
    if (file_.empty())
        return std::make_shared<CPicture>(std::move(bytes_));
    return std::make_shared<CPicture>(folder_, std::exchange(file_, std::string()), size_);
}

bool CPictureReceiver::OpenFile()
{
    const std::string file = folder_->NewFile();
    void* handle =
        FileSystem::OpenFile(file.c_str(), FileSystem::kOpenTruncate, FileSystem::kAttributesPlain);
    if (!IsOpen(handle)) {
        error_ = SystemError();
        return false;
    }
    handle_ = handle;
    file_ = file;
    return true;
}

bool CPictureReceiver::Write(const char* data, std::size_t size)
{
    if (WriteWhole(handle_, data, size) != 0) {
        error_ = SystemError();
        return false;
    }
    // The part that was held in memory is in the file from now on.
    if (!bytes_.empty())
        std::string().swap(bytes_);
    return true;
}

void CPictureReceiver::RemoveFile()
{
    if (!file_.empty())
        FileSystem::DeleteFileW(std::exchange(file_, std::string()).c_str());
}

void CPictureReceiver::CloseFile()
{
    if (handle_ != nullptr && FileSystem::CloseFile(std::exchange(handle_, nullptr)) != 0 &&
        error_.iSecondCode == 0)
        error_ = SystemError();
}

}  // namespace ZellPictureLoader
