#include "station/Recording/RecordingImport.h"

#include "station/Clock.h"
#include "station/Recording/ClipWriter.h"
#include "station/Recording/PictureFitter.h"
#include "station/Recording/SoundConverter.h"
#include "station/Recording/VideoSource.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>

namespace Station {
namespace {

// A cut decodes from the last key frame, so these must not be too far apart.
constexpr std::int64_t kMostSecondsOfGroup = 10;

// Thrown inside only: the file must be converted to be a recording.
struct NotAsItIs
{
};

std::string_view Bytes(const AVPacket& packet)
{
    return {reinterpret_cast<const char*>(packet.data), static_cast<std::size_t>(packet.size)};
}

AVRational FrameRate(const AVStream& video)
{
    const AVRational rate = video.avg_frame_rate.num > 0 ? video.avg_frame_rate : video.r_frame_rate;
    return rate.num > 0 && rate.den > 0 ? rate : AVRational{25, 1};
}

// Forms that make videos of pictures and of texts are none that a camera records in.
void RefuseStills(const VideoSource& source)
{
    const std::string_view form = source.Form().iformat->name;
    constexpr std::string_view kPipe = "_pipe";
    const bool is_picture = form.find("image2") != std::string_view::npos || form == "gif" ||
                            form == "apng" ||
                            (form.size() > kPipe.size() && form.substr(form.size() - kPipe.size()) == kPipe);
    if (is_picture || form == "tty")
        throw VideoError(std::string(source.Form().url).substr(5) + " holds no video.");
}

// Common to both ways: the form of the recording, its sound, its length.
class Importer
{
public:
    Importer(const std::filesystem::path& source, const std::filesystem::path& target)
        : name_(source.u8string()), source_(source), target_(target)
    {
        RefuseStills(source_);
    }
    Importer(const Importer&) = delete;
    Importer& operator=(const Importer&) = delete;
    virtual ~Importer() = default;

    // Milliseconds.
    std::int64_t Run()
    {
        const av::Packet packet = NewPacket();
        while (source_.Read(*packet)) {
            if ((packet->flags & AV_PKT_FLAG_CORRUPT) != 0)
                throw VideoError(name_ + " is cut short or damaged.");
            if (source_.IsVideo(*packet)) {
                ++packets_;
                TakeVideo(*packet);
            } else if (writer_) {
                TakeSound(*packet);
            }
        }
        RefuseShort();
        FinishVideo();
        if (!writer_ || end_ <= 0)
            throw VideoError(name_ + " holds no video.");
        if (sound_)
            sound_->Finish([this](AVPacket& made) { writer_->WriteAudio(made, sound_->Stream().time_base); });
        writer_->Finish();
        return av_rescale_q(end_, source_.Video().time_base, kMilliseconds);
    }

protected:
    virtual void TakeVideo(AVPacket& packet) = 0;
    virtual void FinishVideo() {}

    void StartWriter(const AVStream& video, const ParameterSets& sets, std::int64_t first)
    {
        first_ = first;
        ClipStreams streams;
        streams.video = &video;
        streams.video_box = WriteBox(sets);
        streams.audio = source_.Audio();
        if (streams.audio != nullptr && streams.audio->codecpar->codec_id != AV_CODEC_ID_AAC) {
            sound_ = std::make_unique<SoundConverter>(*streams.audio);
            streams.audio = &sound_->Stream();
        }
        writer_ = std::make_unique<ClipWriter>(target_, ClipFormat::Mp4, streams);
    }

    // Times of the packet are the source's.
    void WriteVideo(AVPacket& packet)
    {
        packet.pts -= first_;
        packet.dts -= first_;
        if (packet.duration <= 0)
            packet.duration =
                av_rescale_q(1, av_inv_q(FrameRate(source_.Video())), source_.Video().time_base);
        end_ = std::max(end_, packet.pts + packet.duration);
        writer_->WriteVideo(packet, source_.Video().time_base);
    }

    const std::string name_;
    VideoSource source_;
    std::unique_ptr<ClipWriter> writer_;

private:
    void TakeSound(AVPacket& packet)
    {
        const AVRational base = source_.Audio()->time_base;
        const std::int64_t first = av_rescale_q(first_, source_.Video().time_base, base);
        // Sound needs the packet before its own to decode.
        if (packet.pts == AV_NOPTS_VALUE || packet.pts + 2 * packet.duration <= first)
            return;
        packet.pts -= first;
        packet.dts = packet.pts;
        if (sound_)
            sound_->Convert(
                packet, [this](AVPacket& made) { writer_->WriteAudio(made, sound_->Stream().time_base); });
        else
            writer_->WriteAudio(packet, base);
    }

    // Files of this family say beforehand how many frames they have.
    void RefuseShort() const
    {
        const bool is_told =
            std::string_view(source_.Form().iformat->name).find("mov") != std::string_view::npos;
        const int told = is_told ? avformat_index_get_entries_count(&source_.Video()) : 0;
        if (packets_ < told)
            throw VideoError(name_ + " is cut short: it has " + std::to_string(packets_) + " of " +
                             std::to_string(told) + " frames.");
    }

    const std::filesystem::path target_;
    std::unique_ptr<SoundConverter> sound_;
    int packets_ = 0;
    std::int64_t first_ = 0;
    std::int64_t end_ = 0;  // ticks of the video after the first frame
};

// Keeps the packets as they are, or throws NotAsItIs.
class Copier final : public Importer
{
public:
    Copier(const std::filesystem::path& source, const std::filesystem::path& target)
        : Importer(source, target)
    {
        const AVCodecParameters& kind = source_.VideoKind();
        const bool has_format = kind.format == AV_PIX_FMT_YUV420P || kind.format == AV_PIX_FMT_YUVJ420P;
        const bool is_whole =
            kind.field_order == AV_FIELD_PROGRESSIVE || kind.field_order == AV_FIELD_UNKNOWN;
        const std::string_view box(reinterpret_cast<const char*>(kind.extradata),
                                   static_cast<std::size_t>(std::max(kind.extradata_size, 0)));
        has_start_codes_ = !box.empty() && box.front() == '\0';
        const bool has_sets = has_start_codes_ ? ReadStartCodes(box, sets_) : ReadBox(box, sets_);
        if (kind.codec_id != AV_CODEC_ID_H264 || !has_format || !is_whole || !has_sets ||
            kind.width % 2 != 0 || kind.height % 2 != 0)
            throw NotAsItIs();
    }

private:
    void TakeVideo(AVPacket& packet) override
    {
        const bool is_key = (packet.flags & AV_PKT_FLAG_KEY) != 0;
        const bool has_times = packet.pts != AV_NOPTS_VALUE && packet.dts != AV_NOPTS_VALUE;
        if (!has_times || (packet.flags & AV_PKT_FLAG_DISCARD) != 0 || packet.dts <= last_dts_)
            throw NotAsItIs();
        last_dts_ = packet.dts;
        if (has_start_codes_) {
            RefuseOtherSets(packet);
            const av::Packet converted = WithBytes(packet, WithLengths(Bytes(packet)));
            av_packet_unref(&packet);
            av_packet_move_ref(&packet, converted.get());
        }
        if (is_key != StartsAnew(Bytes(packet)))
            throw NotAsItIs();
        if (is_key)
            last_key_ = packet.pts;
        if (is_key && !writer_)
            StartWriter(source_.Video(), sets_, packet.pts);
        const AVRational base = source_.Video().time_base;
        if (writer_ && av_compare_ts(packet.pts - last_key_, base, kMostSecondsOfGroup, {1, 1}) > 0)
            throw NotAsItIs();
        if (writer_)
            WriteVideo(packet);
    }

    void RefuseOtherSets(const AVPacket& packet) const
    {
        ParameterSets sets;
        ReadStartCodes(Bytes(packet), sets);
        const bool has_some = !sets.sequence.empty() || !sets.picture.empty();
        if (has_some && !(sets == sets_))
            throw NotAsItIs();
    }

    ParameterSets sets_;
    bool has_start_codes_ = false;
    std::int64_t last_dts_ = INT64_MIN;
    std::int64_t last_key_ = 0;
};

class Converter final : public Importer
{
public:
    Converter(const std::filesystem::path& source, const std::filesystem::path& target)
        : Importer(source, target), decoder_(source_.Video())
    {
    }

private:
    void TakeVideo(AVPacket& packet) override
    {
        decoder_.Decode(&packet, [this](AVFrame& frame) { TakeFrame(frame); });
    }

    void FinishVideo() override
    {
        decoder_.Decode(nullptr, [this](AVFrame& frame) { TakeFrame(frame); });
        if (encoder_)
            encoder_->Finish([this](AVPacket& packet) { WriteVideo(packet); });
    }

    // The size is known for certain only now.
    void StartEncoder(const AVFrame& frame)
    {
        EncoderPlan plan;
        plan.width = std::max(2, frame.width & ~1);
        plan.height = std::max(2, frame.height & ~1);
        plan.time_base = source_.Video().time_base;
        plan.frame_rate = FrameRate(source_.Video());
        plan.pixel_shape = frame.sample_aspect_ratio;
        plan.range = frame.format == AV_PIX_FMT_YUVJ420P ? AVCOL_RANGE_JPEG : frame.color_range;
        plan.primaries = frame.color_primaries;
        plan.transfer = frame.color_trc;
        plan.matrix = frame.colorspace == AVCOL_SPC_RGB ? AVCOL_SPC_UNSPECIFIED : frame.colorspace;
        plan.group = std::max(1, static_cast<int>(2 * av_q2d(plan.frame_rate)));
        fitter_ = std::make_unique<PictureFitter>(plan.width, plan.height);
        encoder_ = std::make_unique<FrameEncoder>(plan);
        StartWriter(encoder_->Stream(), encoder_->Sets(), frame.pts);
    }

    void TakeFrame(AVFrame& frame)
    {
        const std::int64_t time = frame.pts;
        if (time == AV_NOPTS_VALUE || time <= last_)
            return;
        last_ = time;
        if (!encoder_)
            StartEncoder(frame);
        AVFrame& fitted = fitter_->Fit(frame);
        fitted.pts = time;
        encoder_->Encode(fitted, [this](AVPacket& packet) { WriteVideo(packet); });
    }

    FrameDecoder decoder_;
    std::unique_ptr<PictureFitter> fitter_;
    std::unique_ptr<FrameEncoder> encoder_;
    std::int64_t last_ = INT64_MIN;
};

std::int64_t MakeRecording(const std::filesystem::path& file, const std::filesystem::path& target)
{
    try {
        return Copier(file, target).Run();
    } catch (const NotAsItIs&) {
        return Converter(file, target).Run();
    }
}

void RefuseOverlap(Database& database, std::int64_t camera, const TimeSpan& span)
{
    const auto others = FindRecordings(database, camera, span);
    if (!others.empty())
        throw StoreError("Camera " + std::to_string(camera) + " has a recording of that time already: " +
                         FormatSpans({others.front().span}) + ".");
}

}  // namespace

Recording ImportRecording(Database& database, const std::filesystem::path& data,
                          const std::filesystem::path& file, std::int64_t camera, std::int64_t begin)
{
    EnsureRecordings(database);
    if (!HasCamera(database, camera))
        throw StoreError("The station has no camera " + std::to_string(camera) + ".");
    RefuseOverlap(database, camera, {begin, begin + 1});
    std::error_code error;
    std::filesystem::create_directories(RecordingFolder(data), error);
    Recording recording;
    recording.camera = camera;
    recording.file = "camera-" + std::to_string(camera) + "-" + FormatTimeForFile(begin / 1000) + "-" +
                     std::to_string(begin % 1000) + ".mp4";
    const std::filesystem::path target = RecordingFolder(data) / recording.file;
    std::filesystem::path making = target;
    making += ".new";
    recording.span = {begin, begin + MakeRecording(file, making)};
    try {
        RefuseOverlap(database, camera, recording.span);
        std::filesystem::rename(making, target);
        AddRecording(database, recording);
    } catch (...) {
        std::filesystem::remove(making, error);
        throw;
    }
    return recording;
}

}  // namespace Station
