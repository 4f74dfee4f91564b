#include "Video/WorkFile.h"

#include "MultimediaCommHost/Protection.h"
#include "Video/MoveIntoPlace.h"
#include "Video/VideoFailure.h"
#include "ZellBase/Util.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <openssl/crypto.h>

#include <chrono>
#include <filesystem>
#include <mutex>
#include <vector>

namespace Zell::MultimediaComm {
namespace {

namespace fs = std::filesystem;

constexpr int kBufferBytes = 64 * 1024;
constexpr std::size_t kPieceBytes = std::size_t{256} * 1024;
constexpr auto kLeftOverAfter = std::chrono::hours(24);

[[noreturn]] void FailOnDisk(const std::string& path, int error)
{
    throw VideoFailure(InfoOverlayTargetUnwritable, path + ": " + SystemErrorText(error), error);
}

// What a process left that was killed: nobody works on one video for a day.
void RemoveLeftOvers(const fs::path& folder)
{
    std::error_code error;
    const auto now = fs::file_time_type::clock::now();
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        std::error_code ignored;
        const auto written = entry->last_write_time(ignored);
        if (!ignored && now - written > kLeftOverAfter)
            fs::remove(entry->path(), ignored);
    }
}

std::string PrepareWorkFolder()
{
    std::string folder = ZellClientHost::GetClientSettings().data_path + "video-work/";
    const fs::path path = fs::u8path(folder);
    std::error_code error;
    fs::create_directories(path, error);
    if (error)
        throw VideoFailure(InfoOverlayTargetUnwritable, folder + ": " + error.message(), error.value());
    // Nobody else sees what is not finished, though a file itself already has the rights that the target
    // gets.
    fs::permissions(path, fs::perms::owner_all, error);
    static auto* const once = new std::once_flag;
    std::call_once(*once, [&path] { RemoveLeftOvers(path); });
    return folder;
}

}  // namespace

WorkFile::WorkFile(const std::string& password, const std::atomic<bool>& stop)
    : password_(password), stop_(stop), path_(PrepareWorkFolder() + Base::GuidUtil::CreateGuid())
{
    stream_ = CreateWorkStream(path_, !password_.empty());
    if (!stream_)
        FailOnDisk(path_, LastSystemError());
    auto* const buffer = static_cast<unsigned char*>(CheckMemory(av_malloc(kBufferBytes)));
    io_.reset(
        avio_alloc_context(buffer, kBufferBytes, 1, this, nullptr, &WorkFile::WritePart, &WorkFile::Seek));
    if (!io_) {
        av_free(buffer);
        CheckMemory(io_.get());
    }
}

WorkFile::~WorkFile()
{
    io_.reset();
    stream_.reset();
    OPENSSL_cleanse(password_.data(), password_.size());
    std::error_code ignored;
    if (!path_.empty())
        fs::remove(fs::u8path(path_), ignored);
}

int WorkFile::WritePart(void* opaque, std::uint8_t* bytes, int size)
{
    auto& self = *static_cast<WorkFile*>(opaque);
    if (self.stop_)
        return AVERROR_EXIT;
    if (std::fwrite(bytes, 1, static_cast<std::size_t>(size), self.stream_.get()) ==
        static_cast<std::size_t>(size))
        return size;
    self.system_error_ = LastSystemError();
    return AVERROR(EIO);
}

std::int64_t WorkFile::Seek(void* opaque, std::int64_t place, int whence)
{
    auto& self = *static_cast<WorkFile*>(opaque);
    if (whence == AVSEEK_SIZE)
        return std::fflush(self.stream_.get()) == 0 ? SizeOf(self.stream_.get()) : AVERROR(EIO);
    if (whence != SEEK_SET)
        return AVERROR(EINVAL);
    // What the stream holds back is written by a seek, and that may be where the disk is full.
    if (SeekTo(self.stream_.get(), place))
        return place;
    self.system_error_ = LastSystemError();
    return AVERROR(EIO);
}

void WorkFile::CheckWrites() const
{
    if (stop_)
        throw VideoFailure(InfoOverlayStopped, "stopped");
    if (system_error_ != 0)
        FailOnDisk(path_, system_error_);
}

void WorkFile::Place(const std::string& target)
{
    avio_flush(io_.get());
    CheckWrites();
    if (std::fflush(stream_.get()) != 0)
        FailOnDisk(path_, LastSystemError());
    if (password_.empty())
        PlacePlain(target);
    else
        PlaceProtected(target);
}

void WorkFile::PlacePlain(const std::string& target)
{
    if (!Close(std::move(stream_)))
        FailOnDisk(path_, LastSystemError());
    MoveIntoPlace(path_, target, [this] { return stop_.load(); });
    path_.clear();
}

void WorkFile::PlaceProtected(const std::string& target)
{
    const std::string protected_path = path_ + ".protected";
    ProtectedWriter writer;
    std::string reason;
    const auto check = [&reason, this](bool is_good) {
        if (stop_)
            throw VideoFailure(InfoOverlayStopped, "stopped");
        if (!is_good)
            throw VideoFailure(InfoOverlayTargetUnwritable, reason);
    };
    check(writer.Open(protected_path, password_, reason, [this] { return stop_.load(); }));
    if (!SeekTo(stream_.get(), 0))
        FailOnDisk(path_, LastSystemError());
    std::vector<char> piece(kPieceBytes);
    for (std::size_t count = 1; count > 0;) {
        count = std::fread(piece.data(), 1, piece.size(), stream_.get());
        check(writer.Write(piece.data(), count, reason));
    }
    if (std::ferror(stream_.get()) != 0)
        FailOnDisk(path_, LastSystemError());
    OPENSSL_cleanse(piece.data(), piece.size());
    check(writer.Finish(reason));
    try {
        MoveIntoPlace(protected_path, target, [this] { return stop_.load(); });
    } catch (...) {
        std::error_code ignored;
        fs::remove(fs::u8path(protected_path), ignored);
        throw;
    }
}

}  // namespace Zell::MultimediaComm
