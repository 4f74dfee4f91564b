#include "station/Recording/VideoSource.h"

#include <new>

namespace Station {
namespace {

// No name of a file is to be taken for an address of something else.
std::string LocalName(const std::filesystem::path& file)
{
    return "file:" + file.u8string();
}

}  // namespace

VideoSource::VideoSource(const std::filesystem::path& file) : packet_(NewPacket())
{
    const std::string name = file.u8string();
    AVFormatContext* input = nullptr;
    AVDictionary* words = nullptr;
    // Lists of other files and addresses are no recordings.
    av_dict_set(&words, "protocol_whitelist", "file", 0);
    const int result = avformat_open_input(&input, LocalName(file).c_str(), nullptr, &words);
    const av::Options options(words);
    Check(result, name + " can't be read as a video");
    input_.reset(input);
    Check(avformat_find_stream_info(input, nullptr), name + " can't be read as a video");
    video_ = av_find_best_stream(input, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (video_ < 0 || (Video().disposition & AV_DISPOSITION_ATTACHED_PIC) != 0)
        throw VideoError(name + " holds no video.");
    audio_ = av_find_best_stream(input, AVMEDIA_TYPE_AUDIO, -1, video_, nullptr, 0);
    for (unsigned i = 0; i < input->nb_streams; ++i) {
        const bool is_read = static_cast<int>(i) == video_ || static_cast<int>(i) == audio_;
        input->streams[i]->discard = is_read ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    first_ = Video().start_time == AV_NOPTS_VALUE ? 0 : Video().start_time;
}

bool VideoSource::Read(AVPacket& packet)
{
    for (;;) {
        av_packet_unref(&packet);
        const int result = av_read_frame(input_.get(), &packet);
        if (result == AVERROR_EOF)
            return false;
        Check(result, std::string(input_->url) + " can't be read to its end");
        if (packet.stream_index == video_ || packet.stream_index == audio_)
            return true;
    }
}

int VideoSource::Compare(std::int64_t tick, std::int64_t milliseconds) const
{
    return av_compare_ts(tick - first_, Video().time_base, milliseconds, kMilliseconds);
}

void VideoSource::GoTo(std::int64_t tick)
{
    Check(av_seek_frame(input_.get(), video_, tick, AVSEEK_FLAG_BACKWARD),
          std::string(input_->url) + " can't be searched");
}

bool VideoSource::FindKeyFrame(AVPacket& packet)
{
    while (Read(packet)) {
        if (IsVideo(packet) && (packet.flags & AV_PKT_FLAG_KEY) != 0)
            return true;
    }
    return false;
}

void VideoSource::GoToKeyFrame(std::int64_t milliseconds)
{
    std::int64_t at = first_ + av_rescale_q(milliseconds, kMilliseconds, Video().time_base);
    // The file is searched by the order of decoding, which may lead to a key frame that is shown later.
    for (;;) {
        GoTo(at);
        if (!FindKeyFrame(*packet_))
            throw VideoError(std::string(input_->url) + " has no key frame.");
        const std::int64_t found = packet_->dts == AV_NOPTS_VALUE ? packet_->pts : packet_->dts;
        if (Compare(packet_->pts, milliseconds) <= 0 || packet_->pts <= first_ || found > at) {
            GoTo(found);
            return;
        }
        at = found - 1;
    }
}

FrameDecoder::FrameDecoder(const AVStream& stream) : frame_(NewFrame())
{
    const AVCodec* const kind = avcodec_find_decoder(stream.codecpar->codec_id);
    if (kind == nullptr)
        throw VideoError(std::string("Nothing here decodes ") + avcodec_get_name(stream.codecpar->codec_id) +
                         ".");
    codec_.reset(avcodec_alloc_context3(kind));
    if (!codec_)
        throw std::bad_alloc();
    Check(avcodec_parameters_to_context(codec_.get(), stream.codecpar), "The video can't be decoded");
    codec_->pkt_timebase = stream.time_base;
    codec_->thread_count = 0;
    Check(avcodec_open2(codec_.get(), kind, nullptr), "The video can't be decoded");
}

void FrameDecoder::Decode(const AVPacket* packet, const Sink& sink)
{
    Check(avcodec_send_packet(codec_.get(), packet), "A part of the video can't be decoded");
    for (;;) {
        const int result = avcodec_receive_frame(codec_.get(), frame_.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return;
        Check(result, "A part of the video can't be decoded");
        if (frame_->pts == AV_NOPTS_VALUE)
            frame_->pts = frame_->best_effort_timestamp;
        sink(*frame_);
        av_frame_unref(frame_.get());
    }
}

}  // namespace Station
