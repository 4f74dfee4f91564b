#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavcodec/bsf.h>
#include <libavformat/avformat.h>
#include <libavutil/audio_fifo.h>
#include <libavutil/avutil.h>
#include <libavutil/dict.h>
#include <libavutil/error.h>
#include <libavutil/frame.h>
#include <libavutil/log.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

#include <array>
#include <cstdarg>
#include <memory>
#include <string>

// Owners of FFmpeg's objects. Header only: the target av_pointers brings the libraries along.
namespace Zell::MultimediaComm::av {

struct Deleter
{
    // Opened for reading. A custom AVIOContext behind pb is the caller's, and must outlive this.
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
    void operator()(AVCodecParameters* parameters) const { avcodec_parameters_free(&parameters); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVBSFContext* filter) const { av_bsf_free(&filter); }
    void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
    void operator()(SwrContext* resampler) const { swr_free(&resampler); }
    void operator()(AVAudioFifo* samples) const { av_audio_fifo_free(samples); }
    void operator()(AVDictionary* options) const { av_dict_free(&options); }
    // Made with avio_alloc_context: what is still in the buffer is lost, so flush first.
    void operator()(AVIOContext* stream) const
    {
        av_freep(&stream->buffer);
        avio_context_free(&stream);
    }
};

// Made for writing: its pb, if the library opened it (avio_open), is closed too unless the form has none or
// the context writes to a custom one.
struct OutputDeleter
{
    void operator()(AVFormatContext* output) const
    {
        const bool is_own = (output->flags & AVFMT_FLAG_CUSTOM_IO) == 0 && output->oformat != nullptr &&
                            (output->oformat->flags & AVFMT_NOFILE) == 0;
        if (is_own)
            avio_closep(&output->pb);
        avformat_free_context(output);
    }
};

using Input = std::unique_ptr<AVFormatContext, Deleter>;
using Output = std::unique_ptr<AVFormatContext, OutputDeleter>;
using Codec = std::unique_ptr<AVCodecContext, Deleter>;
using Parameters = std::unique_ptr<AVCodecParameters, Deleter>;
using Frame = std::unique_ptr<AVFrame, Deleter>;
using Packet = std::unique_ptr<AVPacket, Deleter>;
using Filter = std::unique_ptr<AVBSFContext, Deleter>;
using Scaler = std::unique_ptr<SwsContext, Deleter>;
using Resampler = std::unique_ptr<SwrContext, Deleter>;
using AudioFifo = std::unique_ptr<AVAudioFifo, Deleter>;
using Options = std::unique_ptr<AVDictionary, Deleter>;
using IoStream = std::unique_ptr<AVIOContext, Deleter>;

// Empty if there is no memory.
inline Frame MakeFrame()
{
    return Frame(av_frame_alloc());
}
inline Packet MakePacket()
{
    return Packet(av_packet_alloc());
}

// Keeps the libraries from writing to standard error of whatever process they are in; what went wrong is told
// by what their calls return. For the whole process; any thread.
inline void SilenceLibraries()
{
    static const bool is_silent = (av_log_set_callback([](void*, int, const char*, va_list) {}), true);
    static_cast<void>(is_silent);
}

// The words of an error number of the libraries.
inline std::string ErrorText(int error)
{
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text = {};
    av_strerror(error, text.data(), text.size());
    return text.data();
}

}  // namespace Zell::MultimediaComm::av
