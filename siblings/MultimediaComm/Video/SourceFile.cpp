#include "Video/SourceFile.h"

#include "MultimediaCommHost/Protection.h"
#include "Platform/DiskFile.h"
#include "Video/VideoFailure.h"
#include "Video/VideoLog.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace Zell::MultimediaComm {
namespace {

constexpr int kBufferBytes = 64 * 1024;

}  // namespace

// The bytes of the file, for FFmpeg's callbacks. FFmpeg itself opens no file: a playlist in a video's clothes
// could send it anywhere.
class SourceFile::Bytes
{
public:
    Bytes(const std::string& path, const std::string& password, const std::atomic<bool>& stop) : stop_(stop)
    {
        if (password.empty())
            OpenPlain(path);
        else
            OpenProtected(path, password);
    }

    static int Read(void* opaque, std::uint8_t* bytes, int size)
    {
        auto& self = *static_cast<Bytes*>(opaque);
        if (self.stop_)
            return AVERROR_EXIT;
        const std::int64_t count = self.ReadSome(bytes, static_cast<std::size_t>(size));
        if (count < 0)
            return AVERROR(EIO);
        self.place_ += count;
        return count == 0 ? AVERROR_EOF : static_cast<int>(count);
    }

    static std::int64_t Seek(void* opaque, std::int64_t place, int whence)
    {
        auto& self = *static_cast<Bytes*>(opaque);
        if (whence == AVSEEK_SIZE)
            return self.size_;
        if (whence != SEEK_SET || place < 0)
            return AVERROR(EINVAL);
        if (self.stream_ && !SeekTo(self.stream_.get(), place))
            return AVERROR(EIO);
        self.place_ = place;
        return place;
    }

private:
    void OpenPlain(const std::string& path)
    {
        stream_ = OpenToRead(path);
        if (!stream_) {
            const int error = LastSystemError();
            throw VideoFailure(InfoOverlaySourceUnreadable, path + ": " + SystemErrorText(error), error);
        }
        size_ = SizeOf(stream_.get());
    }

    void OpenProtected(const std::string& path, const std::string& password)
    {
        std::string reason;
        if (!protected_.Open(path, password, reason, [this] { return stop_.load(); }))
            throw VideoFailure(stop_ ? InfoOverlayStopped : InfoOverlaySourceUnreadable, reason);
        size_ = protected_.Size();
    }

    std::int64_t ReadSome(std::uint8_t* bytes, std::size_t size)
    {
        if (!stream_)
            return protected_.Read(place_, bytes, size);
        const std::size_t count = std::fread(bytes, 1, size, stream_.get());
        return count == 0 && std::ferror(stream_.get()) != 0 ? -1 : static_cast<std::int64_t>(count);
    }

    const std::atomic<bool>& stop_;
    Stream stream_;
    ProtectedReader protected_;
    std::int64_t place_ = 0;
    std::int64_t size_ = 0;
};

SourceFile::SourceFile(const std::string& path, const std::string& password, const std::atomic<bool>& stop)
    : path_(path), stop_(stop), bytes_(std::make_unique<Bytes>(path, password, stop))
{
    av::SilenceLibraries();
    auto* const buffer = static_cast<unsigned char*>(CheckMemory(av_malloc(kBufferBytes)));
    io_.reset(avio_alloc_context(buffer, kBufferBytes, 0, bytes_.get(), &Bytes::Read, nullptr, &Bytes::Seek));
    if (!io_) {
        av_free(buffer);
        CheckMemory(io_.get());
    }
    AVFormatContext* context = CheckMemory(avformat_alloc_context());
    context->pb = io_.get();
    // What the file may point to besides itself is never opened.
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "none", 0);
    const int opened = avformat_open_input(&context, path.c_str(), nullptr, &options);
    const av::Options left(options);
    input_.reset(context);  // null if it failed
    CheckStop();
    Check(opened, InfoOverlaySourceUnreadable, path);
    const int found = avformat_find_stream_info(context, nullptr);
    CheckStop();
    Check(found, InfoOverlaySourceUnreadable, path);
}

SourceFile::~SourceFile() = default;

void SourceFile::CheckStop() const
{
    if (stop_)
        throw VideoFailure(InfoOverlayStopped, "stopped");
}

AVStream& SourceFile::Video() const
{
    const int index = av_find_best_stream(input_.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    const AVStream* stream = index < 0 ? nullptr : input_->streams[index];
    const bool is_usable = stream != nullptr && (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) == 0 &&
                           stream->codecpar->width > 0 && stream->codecpar->height > 0;
    if (!is_usable)
        throw VideoFailure(InfoOverlayNoVideo, path_ + " holds no video");
    return *input_->streams[index];
}

bool SourceFile::IsForm(const char* name) const
{
    std::string_view names = input_->iformat->name;
    while (!names.empty()) {
        const std::size_t comma = std::min(names.find(','), names.size());
        if (names.substr(0, comma) == name)
            return true;
        names.remove_prefix(std::min(comma + 1, names.size()));
    }
    return false;
}

bool SourceFile::Read(AVPacket& packet)
{
    CheckStop();
    const int result = av_read_frame(input_.get(), &packet);
    CheckStop();
    if (result < 0) {
        if (result != AVERROR_EOF)
            WriteVideoLog(Base::details::kLogWarning, "SourceFile::Read",
                          path_ + " breaks off: " + av::ErrorText(result));
        return false;
    }
    if (input_->start_time != AV_NOPTS_VALUE) {
        const AVRational base = input_->streams[packet.stream_index]->time_base;
        const std::int64_t start = av_rescale_q(input_->start_time, AV_TIME_BASE_Q, base);
        if (packet.pts != AV_NOPTS_VALUE)
            packet.pts -= start;
        if (packet.dts != AV_NOPTS_VALUE)
            packet.dts -= start;
    }
    return true;
}

}  // namespace Zell::MultimediaComm
