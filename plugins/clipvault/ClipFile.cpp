#include "plugins/clipvault/ClipFile.h"

#include "NQX/NQX.h"
#include "NQXHost/Path.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Log.h"
#include "ZellBase/Util.h"
#include "ZellTaskKit/ClientServices.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <system_error>
#include <utility>
#include <vector>

namespace ClipVault {
namespace {

using Zell::Base::Error::ErrorCode;
namespace FileSystem = Zell::Base::FileSystem;
namespace fs = std::filesystem;

constexpr ErrorCode kNotSaved(2, 20, 3606);
constexpr std::size_t kCopyBytes = 1u << 20;

ErrorCode SystemError()
{
    return {0, NQX_GetLastError()};
}

ErrorCode NotSaved(const std::string& reason)
{
    Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogError, "clipvault",
                                       "A protected video can't be written: %s", reason.c_str());
    return kNotSaved;
}

bool IsOtherSystem(const std::error_code& error)
{
    return error == std::errc::cross_device_link;
}

}  // namespace

ClipFile::ClipFile(const std::string& password, const Download& download)
    : password_(password), download_(download)
{
}

ClipFile::~ClipFile()
{
    protected_.reset();
    if (handle_ != nullptr)
        FileSystem::CloseFile(handle_);
    if (!path_.empty())
        FileSystem::DeleteFileW(path_.c_str());
}

ErrorCode ClipFile::Open()
{
    if (path_.empty()) {
        const std::string folder =
            ZellTaskKit::CFrameSystemConfigMgr::Instance().GetClientDataPath() + "Downloads/";
        if (FileSystem::MakeFullDir(folder.c_str()) != 0)
            return SystemError();
        // A name as the fetched files have it: what a killed client leaves is taken away with theirs.
        path_ = folder + Zell::Base::GuidUtil::CreateGuid() + ".part";
    }
    size_ = 0;
    return password_.empty() ? OpenPlain() : OpenProtected();
}

ErrorCode ClipFile::OpenPlain()
{
    if (handle_ != nullptr)
        FileSystem::CloseFile(std::exchange(handle_, nullptr));
    void* const handle =
        FileSystem::OpenFile(path_.c_str(), FileSystem::kOpenTruncate, FileSystem::kAttributesPlain);
    if (handle == FileSystem::NoFile())
        return SystemError();
    handle_ = handle;
    return {};
}

ErrorCode ClipFile::OpenProtected()
{
    std::string reason;
    protected_ = std::make_unique<Zell::MultimediaComm::ProtectedWriter>();
    const bool is_open =
        protected_->Open(path_, password_, reason, [this] { return download_.is_stopped.load(); });
    if (is_open)
        return {};
    // A stop is no failure, and whoever asked for it is told nothing of it.
    return download_.is_stopped ? kNotSaved : NotSaved(reason);
}

ErrorCode ClipFile::Write(const char* data, std::size_t size)
{
    size_ += static_cast<std::int64_t>(size);
    std::string reason;
    if (protected_)
        return protected_->Write(data, size, reason) ? ErrorCode() : NotSaved(reason);
    constexpr std::size_t kMostBytes = std::numeric_limits<unsigned int>::max();
    while (size > 0) {
        const std::size_t piece = std::min(size, kMostBytes);
        // The file layer takes a plain pointer and only reads.
        if (FileSystem::WriteFile(handle_, const_cast<char*>(data), static_cast<unsigned int>(piece),
                                  nullptr) != 0)
            return SystemError();
        data += piece;
        size -= piece;
    }
    return {};
}

ErrorCode ClipFile::Close()
{
    std::string reason;
    if (protected_ && !protected_->Finish(reason))
        return NotSaved(reason);
    protected_.reset();
    void* const handle = std::exchange(handle_, nullptr);
    return handle == nullptr || FileSystem::CloseFile(handle) == 0 ? ErrorCode() : SystemError();
}

ErrorCode ClipFile::MoveTo(const std::string& target)
{
    const ErrorCode closed = Close();
    if (closed.iFirstCode != 0 || closed.iSecondCode != 0)
        return closed;
    std::error_code error;
    fs::rename(NQX_Path(path_), NQX_Path(target), error);
    if (IsOtherSystem(error))
        return CopyTo(target);
    if (error)
        return {0, error.value()};
    path_.clear();
    return {};
}

// Piece by piece, so that a stop need not wait for the whole, and under another name until it is whole.
ErrorCode ClipFile::CopyTo(const std::string& target) const
{
    const std::string making = target + "." + Zell::Base::GuidUtil::CreateGuid();
    std::error_code error;
    {
        std::ifstream from(NQX_Path(path_), std::ios::binary);
        std::ofstream to(NQX_Path(making), std::ios::binary);
        std::vector<char> piece(kCopyBytes);
        while (from && to && !download_.is_stopped) {
            from.read(piece.data(), static_cast<std::streamsize>(piece.size()));
            to.write(piece.data(), from.gcount());
        }
        to.close();
        if (!from.eof() || from.bad() || !to || download_.is_stopped) {
            fs::remove(NQX_Path(making), error);
            return kNotSaved;
        }
    }
    fs::rename(NQX_Path(making), NQX_Path(target), error);
    if (!error)
        return {};
    const ErrorCode failure(0, error.value());
    fs::remove(NQX_Path(making), error);
    return failure;
}

}  // namespace ClipVault
