#include "Video/Decoder.h"

#include "Video/VideoFailure.h"

namespace Zell::MultimediaComm {

Decoder::Decoder(const AVStream& stream, Sink sink)
    : sink_(std::move(sink)), frame_(CheckMemory(av::MakeFrame()))
{
    const AVCodec* const codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (codec == nullptr)
        throw VideoFailure(InfoOverlayNoVideo, std::string("there is no decoder for ") +
                                                   avcodec_get_name(stream.codecpar->codec_id));
    codec_.reset(CheckMemory(avcodec_alloc_context3(codec)));
    Check(avcodec_parameters_to_context(codec_.get(), stream.codecpar), InfoOverlayNoVideo, codec->name);
    codec_->pkt_timebase = stream.time_base;
    codec_->thread_count = 0;
    Check(avcodec_open2(codec_.get(), codec, nullptr), InfoOverlayNoVideo, codec->name);
}

void Decoder::Take(const AVPacket& packet)
{
    Send(&packet);
}

void Decoder::Finish()
{
    Send(nullptr);
}

void Decoder::Send(const AVPacket* packet)
{
    const int result = avcodec_send_packet(codec_.get(), packet);
    if (result == AVERROR(ENOMEM))
        Check(result, InfoOverlayFailed, "decoder");
    if (result < 0 && result != AVERROR_EOF)
        ++damaged_;
    Receive();
}

void Decoder::Receive()
{
    for (;;) {
        const int result = avcodec_receive_frame(codec_.get(), frame_.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return;
        if (result == AVERROR(ENOMEM))
            Check(result, InfoOverlayFailed, "decoder");
        if (result < 0) {
            ++damaged_;
            continue;
        }
        sink_(*frame_);
        av_frame_unref(frame_.get());
    }
}

}  // namespace Zell::MultimediaComm
