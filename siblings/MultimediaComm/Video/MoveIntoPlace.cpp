#include "Video/MoveIntoPlace.h"

#include "Platform/DiskFile.h"
#include "Video/VideoFailure.h"
#include "ZellBase/Util.h"

#include <filesystem>
#include <vector>

namespace Zell::MultimediaComm {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPieceBytes = std::size_t{1024} * 1024;

[[noreturn]] void FailOnDisk(const std::string& path)
{
    const int error = LastSystemError();
    throw VideoFailure(InfoOverlayTargetUnwritable, path + ": " + SystemErrorText(error), error);
}

void Copy(const std::string& source, const std::string& copy, const IsStopped& is_stopped)
{
    const Stream from = OpenToRead(source);
    if (!from)
        FailOnDisk(source);
    Stream to = OpenToWrite(copy);
    if (!to)
        FailOnDisk(copy);
    std::vector<char> piece(kPieceBytes);
    for (std::size_t count = 1; count > 0;) {
        if (is_stopped && is_stopped())
            throw VideoFailure(InfoOverlayStopped, "stopped");
        count = std::fread(piece.data(), 1, piece.size(), from.get());
        if (std::fwrite(piece.data(), 1, count, to.get()) != count)
            FailOnDisk(copy);
    }
    if (std::ferror(from.get()) != 0)
        FailOnDisk(source);
    if (!Close(std::move(to)))
        FailOnDisk(copy);
}

void CopyIntoPlace(const std::string& source, const std::string& target, const IsStopped& is_stopped)
{
    const std::string beside = NameBeside(target);
    bool is_other_system = false;
    std::error_code ignored;
    try {
        Copy(source, beside, is_stopped);
        if (!RenameEntry(beside, target, is_other_system))
            FailOnDisk(target);
    } catch (...) {
        fs::remove(fs::u8path(beside), ignored);
        throw;
    }
    fs::remove(fs::u8path(source), ignored);
}

}  // namespace

std::string NameBeside(const std::string& target)
{
    const fs::path folder = fs::u8path(target).parent_path();
    return (folder / ("." + Base::GuidUtil::CreateGuid() + ".part")).u8string();
}

void MoveIntoPlace(const std::string& source, const std::string& target, const IsStopped& is_stopped)
{
    bool is_other_system = false;
    if (RenameEntry(source, target, is_other_system))
        return;
    if (!is_other_system)
        FailOnDisk(target);
    CopyIntoPlace(source, target, is_stopped);
}

}  // namespace Zell::MultimediaComm
