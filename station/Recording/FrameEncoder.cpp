#include "station/Recording/FrameEncoder.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <new>

namespace Station {
namespace {

// Only key frames that need nothing before them, at even distances.
std::string EncoderWords(const EncoderPlan& plan)
{
    return "scenecut=0:open-gop=0:sps-id=" + std::to_string(plan.set_number);
}

}  // namespace

VideoError::VideoError(const std::string& what, int error)
    : std::runtime_error(what + ": " + av::ErrorText(error))
{
}

void SilenceVideoLibraries()
{
    av_log_set_level(AV_LOG_QUIET);
}

void Check(int result, const std::string& what)
{
    if (result < 0)
        throw VideoError(what, result);
}

av::Frame NewFrame()
{
    av::Frame frame = av::MakeFrame();
    if (!frame)
        throw std::bad_alloc();
    return frame;
}

av::Packet NewPacket()
{
    av::Packet packet = av::MakePacket();
    if (!packet)
        throw std::bad_alloc();
    return packet;
}

FrameEncoder::FrameEncoder(const EncoderPlan& plan) : packet_(NewPacket())
{
    const AVCodec* const kind = avcodec_find_encoder_by_name("libx264");
    if (kind == nullptr)
        throw VideoError("There is no encoder for H.264 on this machine.");
    codec_.reset(avcodec_alloc_context3(kind));
    if (!codec_)
        throw std::bad_alloc();
    AVCodecContext& context = *codec_;
    context.width = plan.width;
    context.height = plan.height;
    context.pix_fmt = AV_PIX_FMT_YUV420P;
    context.time_base = plan.time_base;
    context.framerate = plan.frame_rate;
    context.sample_aspect_ratio = plan.pixel_shape;
    context.color_range = plan.range;
    context.color_primaries = plan.primaries;
    context.color_trc = plan.transfer;
    context.colorspace = plan.matrix;
    context.gop_size = plan.group > 0 ? plan.group : 1 << 30;
    context.max_b_frames = 0;
    context.thread_count = plan.threads;
    context.flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_BITEXACT;
    av_opt_set(context.priv_data, "preset", plan.preset, 0);
    av_opt_set(context.priv_data, "profile", plan.profile, 0);
    if (plan.is_even)
        av_opt_set_int(context.priv_data, "qp", plan.quality, 0);
    else
        av_opt_set_double(context.priv_data, "crf", plan.quality, 0);
    av_opt_set(context.priv_data, "x264-params", EncoderWords(plan).c_str(), 0);
    Check(avcodec_open2(&context, kind, nullptr), "The encoder for H.264 does not start");
    MakeStream();
}

void FrameEncoder::MakeStream()
{
    const auto* const bytes = reinterpret_cast<const char*>(codec_->extradata);
    if (!ReadStartCodes({bytes, static_cast<std::size_t>(codec_->extradata_size)}, sets_))
        throw VideoError("The encoder for H.264 gives no parameter sets.");
    form_.reset(avformat_alloc_context());
    AVStream* const stream = form_ ? avformat_new_stream(form_.get(), nullptr) : nullptr;
    if (stream == nullptr)
        throw std::bad_alloc();
    Check(avcodec_parameters_from_context(stream->codecpar, codec_.get()), "The video can't be made");
    stream->time_base = codec_->time_base;
    stream->avg_frame_rate = codec_->framerate;
    stream->sample_aspect_ratio = codec_->sample_aspect_ratio;
}

void FrameEncoder::Encode(AVFrame& frame, const Sink& sink)
{
    frame.pict_type = AV_PICTURE_TYPE_NONE;
    Send(&frame, sink);
}

void FrameEncoder::Finish(const Sink& sink)
{
    Send(nullptr, sink);
}

void FrameEncoder::Send(const AVFrame* frame, const Sink& sink)
{
    Check(avcodec_send_frame(codec_.get(), frame), "A frame can't be encoded");
    for (;;) {
        const int result = avcodec_receive_packet(codec_.get(), packet_.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return;
        Check(result, "A frame can't be encoded");
        const auto* const bytes = reinterpret_cast<const char*>(packet_->data);
        const av::Packet made =
            WithBytes(*packet_, WithLengths({bytes, static_cast<std::size_t>(packet_->size)}));
        av_packet_unref(packet_.get());
        sink(*made);
    }
}

av::Packet WithBytes(const AVPacket& source, const std::string& bytes)
{
    av::Packet packet = NewPacket();
    Check(av_new_packet(packet.get(), static_cast<int>(bytes.size())), "There is no memory for the video");
    std::copy(bytes.begin(), bytes.end(), packet->data);
    Check(av_packet_copy_props(packet.get(), &source), "There is no memory for the video");
    return packet;
}

}  // namespace Station
