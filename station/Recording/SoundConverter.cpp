#include "station/Recording/SoundConverter.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

#include <algorithm>
#include <new>

namespace Station {
namespace {

constexpr int kBitsPerSecond = 128000;
constexpr AVSampleFormat kFormat = AV_SAMPLE_FMT_FLTP;

// The rate of the source if AAC has it.
int RateFor(const AVCodec& kind, int rate)
{
    for (const int* each = kind.supported_samplerates; each != nullptr && *each != 0; ++each)
        if (*each == rate)
            return rate;
    return 48000;
}

av::Frame SoundFrame(const AVCodecContext& encoder, int samples)
{
    av::Frame frame = NewFrame();
    frame->nb_samples = samples;
    frame->format = kFormat;
    frame->sample_rate = encoder.sample_rate;
    Check(av_channel_layout_copy(&frame->ch_layout, &encoder.ch_layout), "There is no memory for the sound");
    Check(av_frame_get_buffer(frame.get(), 0), "There is no memory for the sound");
    return frame;
}

}  // namespace

SoundConverter::SoundConverter(const AVStream& source) : decoder_(source), source_base_(source.time_base)
{
    OpenEncoder(decoder_.Context());
    samples_.reset(av_audio_fifo_alloc(kFormat, encoder_->ch_layout.nb_channels, encoder_->frame_size));
    form_.reset(avformat_alloc_context());
    AVStream* const stream = form_ ? avformat_new_stream(form_.get(), nullptr) : nullptr;
    if (!samples_ || stream == nullptr)
        throw std::bad_alloc();
    Check(avcodec_parameters_from_context(stream->codecpar, encoder_.get()), "The sound can't be converted");
    stream->time_base = encoder_->time_base;
}

void SoundConverter::OpenEncoder(const AVCodecContext& source)
{
    const AVCodec* const kind = avcodec_find_encoder(AV_CODEC_ID_AAC);
    if (kind == nullptr)
        throw VideoError("There is no encoder for AAC on this machine.");
    encoder_.reset(avcodec_alloc_context3(kind));
    if (!encoder_)
        throw std::bad_alloc();
    encoder_->sample_fmt = kFormat;
    encoder_->sample_rate = RateFor(*kind, source.sample_rate);
    av_channel_layout_default(&encoder_->ch_layout, source.ch_layout.nb_channels == 1 ? 1 : 2);
    encoder_->bit_rate = kBitsPerSecond;
    encoder_->time_base = {1, encoder_->sample_rate};
    encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_BITEXACT;
    Check(avcodec_open2(encoder_.get(), kind, nullptr), "The sound can't be converted");
}

void SoundConverter::Convert(const AVPacket& packet, const Sink& sink)
{
    decoder_.Decode(&packet, [this](AVFrame& frame) { TakeFrame(frame); });
    Encode(false, sink);
}

void SoundConverter::Finish(const Sink& sink)
{
    decoder_.Decode(nullptr, [this](AVFrame& frame) { TakeFrame(frame); });
    Encode(true, sink);
    Send(nullptr, sink);
}

void SoundConverter::TakeFrame(AVFrame& frame)
{
    if (next_ == AV_NOPTS_VALUE)
        next_ = frame.pts == AV_NOPTS_VALUE ? 0 : av_rescale_q(frame.pts, source_base_, encoder_->time_base);
    if (frame.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
        av_channel_layout_default(&frame.ch_layout, frame.ch_layout.nb_channels);
    if (!resampler_) {
        SwrContext* made = nullptr;
        Check(
            swr_alloc_set_opts2(&made, &encoder_->ch_layout, kFormat, encoder_->sample_rate, &frame.ch_layout,
                                static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr),
            "The sound can't be converted");
        resampler_.reset(made);
        Check(swr_init(made), "The sound can't be converted");
    }
    const int most = swr_get_out_samples(resampler_.get(), frame.nb_samples);
    const av::Frame converted = SoundFrame(*encoder_, std::max(most, 1));
    const int count = swr_convert(resampler_.get(), converted->data, most,
                                  const_cast<const std::uint8_t**>(frame.extended_data), frame.nb_samples);
    Check(count, "The sound can't be converted");
    Check(av_audio_fifo_write(samples_.get(), reinterpret_cast<void**>(converted->data), count),
          "There is no memory for the sound");
}

void SoundConverter::Encode(bool is_end, const Sink& sink)
{
    for (;;) {
        const int waiting = av_audio_fifo_size(samples_.get());
        const int count = std::min(waiting, encoder_->frame_size);
        if (count == 0 || (!is_end && count < encoder_->frame_size))
            return;
        const av::Frame frame = SoundFrame(*encoder_, count);
        Check(av_audio_fifo_read(samples_.get(), reinterpret_cast<void**>(frame->data), count),
              "The sound can't be converted");
        frame->pts = next_;
        next_ += count;
        Send(frame.get(), sink);
    }
}

void SoundConverter::Send(const AVFrame* frame, const Sink& sink)
{
    Check(avcodec_send_frame(encoder_.get(), frame), "The sound can't be converted");
    const av::Packet packet = NewPacket();
    for (;;) {
        const int result = avcodec_receive_packet(encoder_.get(), packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return;
        Check(result, "The sound can't be converted");
        sink(*packet);
        av_packet_unref(packet.get());
    }
}

}  // namespace Station
