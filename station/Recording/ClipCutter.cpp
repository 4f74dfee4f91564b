#include "station/Recording/ClipCutter.h"

#include "station/Recording/ClipWriter.h"
#include "station/Recording/PictureFitter.h"
#include "station/Recording/VideoSource.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <system_error>

namespace Station {
namespace {

// Thrown inside only.
struct Over
{
};

// A part on its way. Times in ticks are those of its own file.
struct Piece
{
    RecordingPart part;
    std::unique_ptr<VideoSource> source;  // open behind the group, or not at all
    // From the key frame to the one behind it, with the sound between; empty for a part from the start.
    std::vector<av::Packet> group;
    std::int64_t first = 0;         // tick of the first frame that is wanted
    bool needs_encoder = false;     // for the frames of the group, or for all
    bool is_of_other_size = false;  // is encoded anew as a whole
    AVRational base = {1, 1000};    // what a tick is, in seconds
    std::int64_t delay = 0;         // between decoding and showing
    ParameterSets sets;

    std::int64_t From() const { return part.span.begin - part.recording.span.begin; }
    std::int64_t To() const { return part.span.end - part.recording.span.begin; }
};

AVRational FrameRate(const AVStream& video)
{
    if (video.avg_frame_rate.num > 0 && video.avg_frame_rate.den > 0)
        return video.avg_frame_rate;
    return {25, 1};
}

const char* ProfileName(int profile)
{
    if ((profile & ~FF_PROFILE_H264_CONSTRAINED) == FF_PROFILE_H264_BASELINE)
        return "baseline";
    return profile == FF_PROFILE_H264_MAIN ? "main" : "high";
}

ParameterSets SetsOf(const AVCodecParameters& kind, const std::string& name)
{
    ParameterSets sets;
    const auto* const bytes = reinterpret_cast<const char*>(kind.extradata);
    const auto size = static_cast<std::size_t>(std::max(kind.extradata_size, 0));
    if (kind.codec_id != AV_CODEC_ID_H264 || !ReadBox({bytes, size}, sets))
        throw VideoError("The recording " + name + " is not as the station stores them.");
    return sets;
}

class Cutter
{
public:
    Cutter(const std::filesystem::path& data, const std::filesystem::path& file, const IsOver& is_over)
        : folder_(RecordingFolder(data)), file_(file), is_over_(is_over)
    {
    }

    void Cut(const std::vector<RecordingPart>& parts, ClipFormat format)
    {
        for (const RecordingPart& part : parts)
            pieces_.push_back(Plan(part));
        StartWriter(format);
        for (Piece& piece : pieces_)
            Write(piece);
        writer_->Finish();
    }

private:
    std::unique_ptr<VideoSource> Open(const Piece& piece) const
    {
        return std::make_unique<VideoSource>(folder_ / std::filesystem::u8path(piece.part.recording.file));
    }

    void Ask() const
    {
        if (is_over_ && is_over_())
            throw Over();
    }

    Piece Plan(const RecordingPart& part)
    {
        Ask();
        Piece piece;
        piece.part = part;
        piece.source = Open(piece);
        VideoSource& source = *piece.source;
        piece.sets = SetsOf(source.VideoKind(), part.recording.file);
        if (!model_)
            model_ = Open(piece);
        piece.is_of_other_size = source.VideoKind().width != model_->VideoKind().width ||
                                 source.VideoKind().height != model_->VideoKind().height;
        piece.first = source.FirstTick();
        piece.base = source.Video().time_base;
        source.GoToKeyFrame(piece.From());
        ReadGroup(piece);
        // Files of parts from the start are opened again when it is their turn: there may be many.
        if (piece.From() <= 0) {
            piece.group.clear();
            piece.source.reset();
        }
        piece.needs_encoder = piece.needs_encoder || piece.is_of_other_size;
        return piece;
    }

    // Up to the next key frame, which is the last of the group then. Of a part from the start one packet is
    // enough.
    void ReadGroup(Piece& piece) const
    {
        VideoSource& source = *piece.source;
        std::optional<std::int64_t> key;
        piece.first = INT64_MIN;
        for (av::Packet packet = NewPacket(); source.Read(*packet); packet = NewPacket()) {
            Ask();
            const bool is_video = source.IsVideo(*packet);
            const bool is_next = is_video && key && (packet->flags & AV_PKT_FLAG_KEY) != 0;
            if (is_video && !key) {
                key = packet->pts;
                piece.delay = packet->pts - packet->dts;
            }
            if (is_video && !is_next && source.Compare(packet->pts, piece.From()) <= 0)
                piece.first = std::max(piece.first, packet->pts);
            piece.group.push_back(std::move(packet));
            if (is_next || (key && piece.From() <= 0))
                break;
        }
        if (!key)
            throw VideoError("The recording " + piece.part.recording.file + " is empty.");
        piece.first = std::max(piece.first, *key);
        piece.needs_encoder = piece.first > *key;
    }

    void StartWriter(ClipFormat format)
    {
        ParameterSets all = pieces_.front().sets;
        std::set<unsigned> numbers = NumbersOf(all);
        for (const Piece& piece : pieces_) {
            delay_ = std::max(delay_, av_rescale_q(piece.delay, piece.base, Base()));
            if (!piece.is_of_other_size)
                Join(all, numbers, piece.sets);
        }
        if (std::any_of(pieces_.begin(), pieces_.end(), [](const Piece& p) { return p.needs_encoder; })) {
            set_number_ = 0;
            while (set_number_ < kMostSetNumber && numbers.count(set_number_) > 0)
                ++set_number_;
            encoder_sets_ = FrameEncoder(EncoderPlanFor(Base())).Sets();
            Join(all, numbers, encoder_sets_);
        }
        ClipStreams streams;
        streams.video = &model_->Video();
        streams.audio = model_->Audio();
        streams.video_box = WriteBox(all);
        streams.has_sets_inside = has_sets_inside_;
        writer_ = std::make_unique<ClipWriter>(file_, format, streams);
    }

    // Sets that can't be told apart by their numbers stand in front of the pictures that they are for.
    void Join(ParameterSets& all, std::set<unsigned>& numbers, const ParameterSets& more)
    {
        const auto has = [&all](const ParameterSets& sets) {
            const auto among = [](const std::string& unit, const std::vector<std::string>& units) {
                return std::find(units.begin(), units.end(), unit) != units.end();
            };
            return std::all_of(sets.sequence.begin(), sets.sequence.end(),
                               [&](const std::string& unit) { return among(unit, all.sequence); }) &&
                   std::all_of(sets.picture.begin(), sets.picture.end(),
                               [&](const std::string& unit) { return among(unit, all.picture); });
        };
        if (has(more))
            return;
        const std::set<unsigned> others = NumbersOf(more);
        const bool is_new = std::none_of(others.begin(), others.end(),
                                         [&numbers](unsigned number) { return numbers.count(number) > 0; });
        if (is_new) {
            all = Together(all, more);
            numbers.insert(others.begin(), others.end());
        } else {
            has_sets_inside_ = true;
        }
    }

    EncoderPlan EncoderPlanFor(AVRational time_base) const
    {
        const AVStream& video = model_->Video();
        const AVCodecParameters& kind = *video.codecpar;
        EncoderPlan plan;
        plan.width = kind.width;
        plan.height = kind.height;
        plan.time_base = time_base;
        plan.frame_rate = FrameRate(video);
        plan.pixel_shape = kind.sample_aspect_ratio;
        plan.range = kind.color_range;
        plan.primaries = kind.color_primaries;
        plan.transfer = kind.color_trc;
        plan.matrix = kind.color_space;
        plan.profile = ProfileName(kind.profile);
        plan.quality = kQuality;
        plan.group = kGroup;
        plan.set_number = set_number_;
        return plan;
    }

    AVRational Base() const { return model_->Video().time_base; }

    void Write(Piece& piece)
    {
        if (!piece.source) {
            piece.source = Open(piece);
            piece.source->GoToKeyFrame(0);
        }
        start_ = end_;
        if (piece.is_of_other_size)
            EncodeAll(piece);
        else if (piece.needs_encoder)
            EncodeGroupAndCopyRest(piece);
        else
            CopyAll(piece);
        piece.group.clear();
        piece.source.reset();
    }

    // Gives the packets of the group, then those of the file.
    bool Next(Piece& piece, std::size_t& at, av::Packet& packet) const
    {
        Ask();
        if (at < piece.group.size()) {
            packet = std::move(piece.group[at++]);
            return true;
        }
        packet = NewPacket();
        return piece.source->Read(*packet);
    }

    void CopyAll(Piece& piece)
    {
        std::size_t at = 0;
        std::deque<av::Packet> late;
        CopyFrom(piece, at, late);
    }

    // In the order of decoding. Frames behind the end are kept back until one comes that builds on them.
    void CopyFrom(Piece& piece, std::size_t at, std::deque<av::Packet>& late)
    {
        av::Packet packet;
        while (Next(piece, at, packet)) {
            VideoSource& source = *piece.source;
            if (!source.IsVideo(*packet)) {
                WriteAudio(piece, *packet);
                continue;
            }
            if (source.Compare(packet->dts, piece.To()) >= 0)
                break;
            const bool is_wanted = source.Compare(packet->pts, piece.To()) < 0;
            late.push_back(std::move(packet));
            while (is_wanted && !late.empty()) {
                WriteCopy(piece, *late.front());
                late.pop_front();
            }
        }
    }

    void EncodeGroupAndCopyRest(Piece& piece)
    {
        FrameEncoder encoder(EncoderPlanFor(piece.base));
        FrameDecoder decoder(piece.source->Video());
        const auto sink = [&](AVFrame& frame) { EncodeFrame(piece, encoder, frame, frame); };
        std::size_t at = 0;
        for (; at < piece.group.size(); ++at) {
            Ask();
            AVPacket& packet = *piece.group[at];
            const bool is_video = piece.source->IsVideo(packet);
            if (is_video && at + 1 == piece.group.size() && (packet.flags & AV_PKT_FLAG_KEY) != 0)
                break;  // copied
            if (is_video)
                decoder.Decode(&packet, sink);
            else
                WriteAudio(piece, packet);
        }
        decoder.Decode(nullptr, sink);
        encoder.Finish([&](AVPacket& packet) { WriteEncoded(piece, packet); });
        std::deque<av::Packet> late;
        CopyFrom(piece, at, late);
    }

    void EncodeAll(Piece& piece)
    {
        FrameEncoder encoder(EncoderPlanFor(piece.base));
        FrameDecoder decoder(piece.source->Video());
        PictureFitter fitter(model_->VideoKind().width, model_->VideoKind().height);
        const auto sink = [&](AVFrame& frame) { EncodeFrame(piece, encoder, frame, fitter.Fit(frame)); };
        std::size_t at = 0;
        av::Packet packet;
        while (Next(piece, at, packet)) {
            if (!piece.source->IsVideo(*packet)) {
                WriteAudio(piece, *packet);
                continue;
            }
            if (piece.source->Compare(packet->dts, piece.To()) >= 0)
                break;
            decoder.Decode(packet.get(), sink);
        }
        decoder.Decode(nullptr, sink);
        encoder.Finish([&](AVPacket& made) { WriteEncoded(piece, made); });
    }

    void EncodeFrame(const Piece& piece, FrameEncoder& encoder, const AVFrame& time, AVFrame& frame)
    {
        Ask();
        if (time.pts < piece.first || piece.source->Compare(time.pts, piece.To()) >= 0)
            return;
        frame.pts = time.pts;
        encoder.Encode(frame, [&](AVPacket& packet) { WriteEncoded(piece, packet); });
    }

    void WriteEncoded(const Piece& piece, AVPacket& packet)
    {
        packet.dts = packet.pts;
        WriteWithSets(piece, packet, encoder_sets_, delay_);
    }

    void WriteCopy(const Piece& piece, AVPacket& packet)
    {
        const std::int64_t further = delay_ - av_rescale_q(piece.delay, piece.base, Base());
        WriteWithSets(piece, packet, piece.sets, further);
    }

    void WriteWithSets(const Piece& piece, AVPacket& packet, const ParameterSets& sets, std::int64_t earlier)
    {
        if (!has_sets_inside_ || (packet.flags & AV_PKT_FLAG_KEY) == 0) {
            WriteVideo(piece, packet, earlier);
            return;
        }
        const std::string picture(reinterpret_cast<const char*>(packet.data),
                                  static_cast<std::size_t>(packet.size));
        WriteVideo(piece, *WithBytes(packet, AsUnits(sets) + picture), earlier);
    }

    // Ticks of the whole video; decoding is to be that much earlier than it says.
    void WriteVideo(const Piece& piece, AVPacket& packet, std::int64_t earlier)
    {
        const AVRational base = piece.base;
        packet.pts = start_ + av_rescale_q(packet.pts - piece.first, base, Base());
        packet.dts = start_ + av_rescale_q(packet.dts - piece.first, base, Base()) - earlier;
        packet.dts = std::max(packet.dts, last_dts_ + 1);
        last_dts_ = packet.dts;
        packet.duration = packet.duration > 0 ? av_rescale_q(packet.duration, base, Base()) : FrameTicks();
        end_ = std::max(end_, packet.pts + packet.duration);
        writer_->WriteVideo(packet, Base());
    }

    std::int64_t FrameTicks() const { return av_rescale_q(1, av_inv_q(FrameRate(model_->Video())), Base()); }

    bool HasSameSound(const AVStream& audio) const
    {
        const AVCodecParameters& ours = *model_->Audio()->codecpar;
        const AVCodecParameters& theirs = *audio.codecpar;
        return ours.codec_id == theirs.codec_id && ours.sample_rate == theirs.sample_rate &&
               ours.ch_layout.nb_channels == theirs.ch_layout.nb_channels &&
               ours.extradata_size == theirs.extradata_size &&
               std::equal(ours.extradata, ours.extradata + ours.extradata_size, theirs.extradata);
    }

    void WriteAudio(const Piece& piece, AVPacket& packet)
    {
        const AVStream* const audio = piece.source->Audio();
        if (model_->Audio() == nullptr || audio == nullptr || !HasSameSound(*audio))
            return;
        const std::int64_t first = av_rescale_q(piece.first, piece.base, audio->time_base);
        const std::int64_t video_first =
            av_rescale_q(piece.source->FirstTick(), piece.base, audio->time_base);
        const bool is_wanted =
            packet.pts >= first &&
            av_compare_ts(packet.pts - video_first, audio->time_base, piece.To(), kMilliseconds) < 0;
        const AVRational base = model_->Audio()->time_base;
        const std::int64_t at =
            av_rescale_q(packet.pts - first, audio->time_base, base) + av_rescale_q(start_, Base(), base);
        if (!is_wanted || at <= last_audio_)
            return;
        last_audio_ = at;
        packet.pts = at;
        packet.dts = at;
        packet.duration = av_rescale_q(packet.duration, audio->time_base, base);
        writer_->WriteAudio(packet, base);
    }

    static constexpr unsigned kMostSetNumber = 31;
    static constexpr int kQuality = 17;
    static constexpr int kGroup = 250;

    const std::filesystem::path folder_;
    const std::filesystem::path file_;
    const IsOver& is_over_;
    std::vector<Piece> pieces_;
    std::unique_ptr<VideoSource> model_;  // the file of the first part, which the others are made to fit
    std::unique_ptr<ClipWriter> writer_;
    ParameterSets encoder_sets_;
    unsigned set_number_ = 0;
    bool has_sets_inside_ = false;
    std::int64_t delay_ = 0;
    std::int64_t start_ = 0;  // where the piece in work begins, in ticks of the whole
    std::int64_t end_ = 0;
    std::int64_t last_dts_ = INT64_MIN / 2;
    std::int64_t last_audio_ = INT64_MIN / 2;
};

}  // namespace

bool CutClip(const std::filesystem::path& data, const std::vector<RecordingPart>& parts, ClipFormat format,
             const std::filesystem::path& file, const IsOver& is_over)
{
    if (parts.empty())
        throw VideoError("There is nothing to cut.");
    try {
        Cutter(data, file, is_over).Cut(parts, format);
        return true;
    } catch (const Over&) {
        return false;
    }
}

std::string GrabFrame(const std::filesystem::path& data, const Recording& recording, std::int64_t time)
{
    const std::int64_t at = time - recording.span.begin;
    VideoSource source(RecordingFolder(data) / std::filesystem::u8path(recording.file));
    source.GoToKeyFrame(at);
    FrameDecoder decoder(source.Video());
    const av::Frame shown = NewFrame();
    bool is_past = false;
    const auto sink = [&](AVFrame& frame) {
        const bool is_behind = source.Compare(frame.pts, at) > 0;
        is_past = is_past || (is_behind && shown->width > 0);
        if (is_past || (is_behind && shown->width > 0))
            return;
        av_frame_unref(shown.get());
        Check(av_frame_ref(shown.get(), &frame), "There is no memory for the picture");
    };
    const av::Packet packet = NewPacket();
    while (!is_past && source.Read(*packet)) {
        if (source.IsVideo(*packet))
            decoder.Decode(packet.get(), sink);
    }
    decoder.Decode(nullptr, sink);
    if (shown->width <= 0)
        throw VideoError("The recording " + recording.file + " has no frame at that time.");
    return FrameAsJpeg(*shown, source.Video());
}

}  // namespace Station
