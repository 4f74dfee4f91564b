#include "Video/Decoder.h"
#include "Video/TargetFile.h"
#include "Video/Track.h"
#include "Video/VideoFailure.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

#include <algorithm>

namespace Zell::MultimediaComm {
namespace {

constexpr std::int64_t kBitsPerChannel = 96'000;

class EncodedAudioTrack final : public Track
{
public:
    EncodedAudioTrack(const AVStream& stream, TargetFile& target)
        : target_(target),
          time_base_(stream.time_base),
          decoder_(stream, [this](AVFrame& frame) { TakeSound(frame); }),
          frame_(CheckMemory(av::MakeFrame())),
          packet_(CheckMemory(av::MakePacket()))
    {
        OpenEncoder(target.WantsGlobalHeader());
        OpenResampler();
        samples_.reset(CheckMemory(av_audio_fifo_alloc(encoder_->sample_fmt, encoder_->ch_layout.nb_channels,
                                                       encoder_->frame_size)));
        const av::Parameters parameters(CheckMemory(avcodec_parameters_alloc()));
        Check(avcodec_parameters_from_context(parameters.get(), encoder_.get()), InfoOverlayFailed, "AAC");
        stream_ = target.AddStream(stream, *parameters, encoder_->time_base, {0, 1});
    }

    void Take(AVPacket& packet) override { decoder_.Take(packet); }

    void Finish() override
    {
        decoder_.Finish();
        Resample(nullptr);
        while (av_audio_fifo_size(samples_.get()) > 0)
            EncodeSome();
        Send(nullptr);
    }

private:
    void OpenEncoder(bool has_global_header)
    {
        const AVCodecContext& source = decoder_.Context();
        const AVCodec* const codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
        if (codec == nullptr)
            throw VideoFailure(InfoOverlayFailed, "there is no AAC encoder");
        encoder_.reset(CheckMemory(avcodec_alloc_context3(codec)));
        encoder_->sample_rate = NearestRate(*codec, source.sample_rate);
        // One or two channels; more become two.
        av_channel_layout_default(&encoder_->ch_layout, std::clamp(source.ch_layout.nb_channels, 1, 2));
        encoder_->sample_fmt = codec->sample_fmts[0];
        encoder_->bit_rate = kBitsPerChannel * encoder_->ch_layout.nb_channels;
        encoder_->time_base = {1, encoder_->sample_rate};
        if (has_global_header)
            encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
        Check(avcodec_open2(encoder_.get(), codec, nullptr), InfoOverlayFailed, "AAC");
    }

    static int NearestRate(const AVCodec& codec, int wanted)
    {
        int nearest = 0;
        for (const int* rate = codec.supported_samplerates; rate != nullptr && *rate != 0; ++rate) {
            if (nearest == 0 || std::abs(*rate - wanted) < std::abs(nearest - wanted))
                nearest = *rate;
        }
        return nearest != 0 ? nearest : wanted;
    }

    void OpenResampler()
    {
        const AVCodecContext& source = decoder_.Context();
        AVChannelLayout from = {};
        if (source.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
            av_channel_layout_default(&from, source.ch_layout.nb_channels);
        else
            Check(av_channel_layout_copy(&from, &source.ch_layout), InfoOverlayFailed, "sound");
        SwrContext* resampler = nullptr;
        const int result =
            swr_alloc_set_opts2(&resampler, &encoder_->ch_layout, encoder_->sample_fmt, encoder_->sample_rate,
                                &from, source.sample_fmt, source.sample_rate, 0, nullptr);
        av_channel_layout_uninit(&from);
        resampler_.reset(resampler);
        Check(result, InfoOverlayFailed, "sound");
        Check(swr_init(resampler), InfoOverlayFailed, "sound");
    }

    void TakeSound(AVFrame& sound)
    {
        if (!has_start_ && sound.best_effort_timestamp != AV_NOPTS_VALUE)
            next_time_ = av_rescale_q(sound.best_effort_timestamp, time_base_, encoder_->time_base);
        has_start_ = true;
        Resample(&sound);
        while (av_audio_fifo_size(samples_.get()) >= encoder_->frame_size)
            EncodeSome();
    }

    // Without a frame: what the resampler still holds.
    void Resample(const AVFrame* sound)
    {
        const int taken = sound == nullptr ? 0 : sound->nb_samples;
        const int most = Check(swr_get_out_samples(resampler_.get(), taken), InfoOverlayFailed, "sound");
        if (most == 0)
            return;
        PrepareFrame(most);
        const int made = Check(
            swr_convert(resampler_.get(), frame_->extended_data, most,
                        sound == nullptr ? nullptr : const_cast<const std::uint8_t**>(sound->extended_data),
                        taken),
            InfoOverlayFailed, "sound");
        if (av_audio_fifo_write(samples_.get(), reinterpret_cast<void**>(frame_->extended_data), made) < made)
            throw VideoFailure(InfoOverlayFailed, "there is no memory");
    }

    void PrepareFrame(int samples)
    {
        av_frame_unref(frame_.get());
        frame_->nb_samples = samples;
        frame_->format = encoder_->sample_fmt;
        frame_->sample_rate = encoder_->sample_rate;
        Check(av_channel_layout_copy(&frame_->ch_layout, &encoder_->ch_layout), InfoOverlayFailed, "sound");
        Check(av_frame_get_buffer(frame_.get(), 0), InfoOverlayFailed, "sound");
    }

    void EncodeSome()
    {
        const int count = std::min(av_audio_fifo_size(samples_.get()), encoder_->frame_size);
        PrepareFrame(count);
        if (av_audio_fifo_read(samples_.get(), reinterpret_cast<void**>(frame_->extended_data), count) <
            count)
            throw VideoFailure(InfoOverlayFailed, "sound got lost");
        frame_->pts = next_time_;
        next_time_ += count;
        Send(frame_.get());
    }

    void Send(const AVFrame* sound)
    {
        Check(avcodec_send_frame(encoder_.get(), sound), InfoOverlayFailed, "AAC");
        for (;;) {
            const int result = avcodec_receive_packet(encoder_.get(), packet_.get());
            if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
                return;
            Check(result, InfoOverlayFailed, "AAC");
            target_.Write(*packet_, stream_, encoder_->time_base);
        }
    }

    TargetFile& target_;
    AVRational time_base_;
    Decoder decoder_;
    av::Frame frame_;
    av::Packet packet_;
    av::Codec encoder_;
    av::Resampler resampler_;
    av::AudioFifo samples_;
    int stream_ = 0;
    bool has_start_ = false;
    std::int64_t next_time_ = 0;
};

}  // namespace

std::unique_ptr<Track> MakeEncodedAudioTrack(const AVStream& stream, TargetFile& target)
{
    return std::make_unique<EncodedAudioTrack>(stream, target);
}

}  // namespace Zell::MultimediaComm
