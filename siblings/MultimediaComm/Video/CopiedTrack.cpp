#include "Video/SourceFile.h"
#include "Video/TargetFile.h"
#include "Video/Track.h"
#include "Video/VideoFailure.h"

namespace Zell::MultimediaComm {
namespace {

// An AVI has H.264 and H.265 with start codes, an mp4 with lengths; an mp4 has no packed MPEG-4 pictures.
const char* FilterFor(AVCodecID codec, bool is_from_avi, bool is_to_avi)
{
    if (is_to_avi && !is_from_avi && codec == AV_CODEC_ID_H264)
        return "h264_mp4toannexb";
    if (is_to_avi && !is_from_avi && codec == AV_CODEC_ID_HEVC)
        return "hevc_mp4toannexb";
    if (is_from_avi && !is_to_avi && codec == AV_CODEC_ID_MPEG4)
        return "mpeg4_unpack_bframes";
    return nullptr;
}

class CopiedTrack final : public Track
{
public:
    CopiedTrack(const SourceFile& source, const AVStream& stream, TargetFile& target)
        : target_(target),
          time_base_(stream.time_base),
          packet_(CheckMemory(av::MakePacket())),
          is_video_(stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO)
    {
        const char* const name = FilterFor(stream.codecpar->codec_id, source.IsForm("avi"), target.IsAvi());
        if (name != nullptr)
            MakeFilter(name, stream);
        const AVCodecParameters& parameters = filter_ ? *filter_->par_out : *stream.codecpar;
        stream_ = target.AddStream(stream, parameters, time_base_,
                                   is_video_ ? RateOf(source, stream) : AVRational{0, 1});
    }

    void Take(AVPacket& packet) override
    {
        ++packets_;
        if (!filter_) {
            target_.Write(packet, stream_, time_base_);
            return;
        }
        Check(av_bsf_send_packet(filter_.get(), &packet), InfoOverlayFailed, filter_->filter->name);
        Drain();
    }

    void Finish() override
    {
        if (is_video_ && packets_ == 0)
            throw VideoFailure(InfoOverlayNoVideo, "there is not one picture");
        if (!filter_)
            return;
        Check(av_bsf_send_packet(filter_.get(), nullptr), InfoOverlayFailed, filter_->filter->name);
        Drain();
    }

private:
    // Pictures that come now and then are counted in the finest steps that they keep to.
    static AVRational RateOf(const SourceFile& source, const AVStream& stream)
    {
        constexpr double kMostPictures = 240;
        const AVRational average =
            av_guess_frame_rate(&source.Context(), const_cast<AVStream*>(&stream), nullptr);
        const AVRational finest = stream.r_frame_rate;
        const bool is_finer = finest.num > 0 && finest.den > 0 && av_q2d(finest) <= kMostPictures &&
                              av_cmp_q(finest, average) > 0;
        return is_finer ? finest : average;
    }

    void MakeFilter(const char* name, const AVStream& stream)
    {
        const AVBitStreamFilter* const filter = av_bsf_get_by_name(name);
        if (filter == nullptr)
            throw VideoFailure(InfoOverlayFailed, std::string("there is no ") + name);
        AVBSFContext* context = nullptr;
        Check(av_bsf_alloc(filter, &context), InfoOverlayFailed, name);
        filter_.reset(context);
        Check(avcodec_parameters_copy(context->par_in, stream.codecpar), InfoOverlayFailed, name);
        context->time_base_in = time_base_;
        Check(av_bsf_init(context), InfoOverlayFailed, name);
    }

    void Drain()
    {
        for (;;) {
            const int result = av_bsf_receive_packet(filter_.get(), packet_.get());
            if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
                return;
            Check(result, InfoOverlaySourceUnreadable, filter_->filter->name);
            target_.Write(*packet_, stream_, time_base_);
        }
    }

    TargetFile& target_;
    AVRational time_base_;
    av::Packet packet_;
    av::Filter filter_;
    bool is_video_;
    int stream_ = 0;
    std::int64_t packets_ = 0;
};

}  // namespace

std::unique_ptr<Track> MakeCopiedTrack(const SourceFile& source, const AVStream& stream, TargetFile& target)
{
    return std::make_unique<CopiedTrack>(source, stream, target);
}

}  // namespace Zell::MultimediaComm
