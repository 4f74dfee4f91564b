#include "Video/VideoEncoder.h"

#include "Video/PictureFitter.h"
#include "Video/VideoFailure.h"

#include <algorithm>

namespace Zell::MultimediaComm {
namespace {

// Differences can't be seen, and a machine of two cores stamps faster than a video plays.
constexpr char kPreset[] = "veryfast";
constexpr char kQuality[] = "20";
constexpr int kSecondsBetweenKeys = 2;

const AVCodec* FindEncoder()
{
    const AVCodec* const codec = avcodec_find_encoder_by_name("libx264");
    return codec != nullptr ? codec : avcodec_find_encoder(AV_CODEC_ID_H264);
}

int PicturesBetweenKeys(AVRational rate)
{
    const double pictures = kSecondsBetweenKeys * av_q2d(rate);
    return static_cast<int>(std::clamp(pictures, 10.0, 300.0));
}

}  // namespace

bool VideoEncoder::IsThere()
{
    return FindEncoder() != nullptr;
}

VideoEncoder::VideoEncoder(const PictureFitter& pictures, const Setting& setting, Sink sink)
    : sink_(std::move(sink)), packet_(CheckMemory(av::MakePacket()))
{
    const AVCodec* const codec = FindEncoder();
    if (codec == nullptr)
        throw VideoFailure(InfoOverlayFailed, "there is no H.264 encoder");
    codec_.reset(CheckMemory(avcodec_alloc_context3(codec)));
    codec_->width = pictures.Width();
    codec_->height = pictures.Height();
    codec_->pix_fmt = AV_PIX_FMT_YUV420P;
    codec_->time_base = setting.time_base;
    codec_->framerate = setting.frame_rate;
    codec_->sample_aspect_ratio = setting.pixel_shape;
    codec_->max_b_frames = 0;
    codec_->gop_size = PicturesBetweenKeys(setting.frame_rate);
    codec_->thread_count = 0;
    if (setting.has_global_header)
        codec_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (setting.is_interlaced)
        codec_->flags |= AV_CODEC_FLAG_INTERLACED_DCT | AV_CODEC_FLAG_INTERLACED_ME;
    SetColours(pictures);
    AVDictionary* options = nullptr;
    av_dict_set(&options, "preset", kPreset, 0);
    av_dict_set(&options, "crf", kQuality, 0);
    // The stream then tells its rate by the pictures, not by the clock of the file that it is in.
    if (setting.is_steady)
        av_dict_set(&options, "x264-params", "force-cfr=1", 0);
    const int opened = avcodec_open2(codec_.get(), codec, &options);
    const av::Options left(options);
    Check(opened, InfoOverlayFailed, codec->name);
}

void VideoEncoder::SetColours(const PictureFitter& pictures)
{
    const PictureColours& colours = pictures.Colours();
    codec_->color_range = colours.range;
    codec_->colorspace = colours.space;
    codec_->color_primaries = colours.primaries;
    codec_->color_trc = colours.transfer;
    codec_->chroma_sample_location = colours.chroma_place;
}

void VideoEncoder::Take(const AVFrame& picture)
{
    durations_.push_back({picture.pts, picture.pkt_duration});
    Send(&picture);
}

void VideoEncoder::Finish()
{
    Send(nullptr);
}

void VideoEncoder::Send(const AVFrame* picture)
{
    Check(avcodec_send_frame(codec_.get(), picture), InfoOverlayFailed, "encoder");
    for (;;) {
        const int result = avcodec_receive_packet(codec_.get(), packet_.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return;
        Check(result, InfoOverlayFailed, "encoder");
        while (!durations_.empty() && durations_.front().time <= packet_->pts) {
            packet_->duration = durations_.front().duration;
            durations_.pop_front();
        }
        sink_(*packet_);
        av_packet_unref(packet_.get());
    }
}

}  // namespace Zell::MultimediaComm
