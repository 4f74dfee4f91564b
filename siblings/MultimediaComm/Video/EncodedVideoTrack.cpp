#include "Video/Decoder.h"
#include "Video/PictureFitter.h"
#include "Video/Rotation.h"
#include "Video/SourceFile.h"
#include "Video/TargetFile.h"
#include "Video/Track.h"
#include "Video/VideoEncoder.h"
#include "Video/VideoFailure.h"
#include "Video/VideoLog.h"

#include <algorithm>
#include <cmath>

namespace Zell::MultimediaComm {
namespace {

constexpr AVRational kMilliseconds = {1, 1000};
constexpr AVRational kDoubtfulRate = {25, 1};

bool IsInterlaced(const AVStream& stream)
{
    const AVFieldOrder order = stream.codecpar->field_order;
    return order != AV_FIELD_UNKNOWN && order != AV_FIELD_PROGRESSIVE;
}

// Whether all pictures come at the average rate, as far as the file tells.
bool IsSteady(const AVStream& stream)
{
    const double average = av_q2d(stream.avg_frame_rate);
    const double finest = av_q2d(stream.r_frame_rate);
    return average > 0 && std::abs(finest - average) < average * 0.01;
}

class EncodedVideoTrack final : public Track
{
public:
    EncodedVideoTrack(SourceFile& source, AVStream& stream, TargetFile& target,
                      const PictureWorkMaker& make_work)
        : source_(source),
          target_(target),
          time_base_(stream.time_base),
          frame_rate_(av_guess_frame_rate(&source.Context(), &stream, nullptr)),
          decoder_(stream, [this](AVFrame& frame) { TakePicture(frame); }),
          fitter_(decoder_.Context()),
          encoder_(fitter_, SettingOf(stream), [this](AVPacket& packet) { WritePacket(packet); })
    {
        if (make_work)
            work_ = make_work(fitter_, QuarterTurns(stream));
        const av::Parameters parameters(CheckMemory(avcodec_parameters_alloc()));
        Check(avcodec_parameters_from_context(parameters.get(), &encoder_.Context()), InfoOverlayFailed,
              "encoder");
        stream_ = target.AddStream(stream, *parameters, time_base_, frame_rate_);
    }

    void Take(AVPacket& packet) override { decoder_.Take(packet); }

    void Finish() override
    {
        decoder_.Finish();
        if (pictures_ == 0)
            throw VideoFailure(InfoOverlayNoVideo, "not one picture can be decoded");
        if (decoder_.DamagedPackets() > 0)
            WriteVideoLog(Base::details::kLogWarning, "EncodedVideoTrack::Finish",
                          std::to_string(decoder_.DamagedPackets()) +
                              " pictures of the source are damaged, " + std::to_string(pictures_) +
                              " were decoded");
        encoder_.Finish();
    }

private:
    VideoEncoder::Setting SettingOf(const AVStream& stream)
    {
        if (frame_rate_.num <= 0 || frame_rate_.den <= 0)
            frame_rate_ = kDoubtfulRate;
        VideoEncoder::Setting setting;
        setting.time_base = time_base_;
        setting.frame_rate = frame_rate_;
        setting.pixel_shape = stream.sample_aspect_ratio.num > 0 ? stream.sample_aspect_ratio
                                                                 : stream.codecpar->sample_aspect_ratio;
        setting.is_steady = IsSteady(stream);
        setting.is_interlaced = IsInterlaced(stream);
        setting.has_global_header = target_.WantsGlobalHeader();
        return setting;
    }

    void TakePicture(AVFrame& decoded)
    {
        source_.CheckStop();
        SetTimes(decoded);
        const av::Frame picture = fitter_.Fit(decoded);
        picture->pts = decoded.pts;
        picture->pkt_duration = decoded.pkt_duration;
        if (work_)
            work_(*picture, av_rescale_q(picture->pts - first_time_, time_base_, kMilliseconds));
        encoder_.Take(*picture);
        ++pictures_;
    }

    // A picture without a time follows the one before; times always rise.
    void SetTimes(AVFrame& decoded)
    {
        if (decoded.pkt_duration <= 0)
            decoded.pkt_duration =
                std::max<std::int64_t>(1, av_rescale_q(1, av_inv_q(frame_rate_), time_base_));
        decoded.pts = decoded.best_effort_timestamp;
        if (pictures_ == 0) {
            if (decoded.pts == AV_NOPTS_VALUE)
                decoded.pts = 0;
            first_time_ = decoded.pts;
        } else if (decoded.pts == AV_NOPTS_VALUE) {
            decoded.pts = next_time_;
        } else {
            decoded.pts = std::max(decoded.pts, last_time_ + 1);
        }
        last_time_ = decoded.pts;
        next_time_ = decoded.pts + decoded.pkt_duration;
    }

    void WritePacket(AVPacket& packet)
    {
        source_.CheckStop();
        target_.Write(packet, stream_, time_base_);
    }

    SourceFile& source_;
    TargetFile& target_;
    AVRational time_base_;
    AVRational frame_rate_;
    Decoder decoder_;
    PictureFitter fitter_;
    VideoEncoder encoder_;
    PictureWork work_;
    int stream_ = 0;
    std::int64_t pictures_ = 0;
    std::int64_t first_time_ = 0;
    std::int64_t last_time_ = 0;
    std::int64_t next_time_ = 0;
};

}  // namespace

std::unique_ptr<Track> MakeEncodedVideoTrack(SourceFile& source, AVStream& stream, TargetFile& target,
                                             const PictureWorkMaker& make_work)
{
    return std::make_unique<EncodedVideoTrack>(source, stream, target, make_work);
}

}  // namespace Zell::MultimediaComm
