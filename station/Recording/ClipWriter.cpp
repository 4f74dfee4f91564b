#include "station/Recording/ClipWriter.h"

#include <cstring>
#include <new>
#include <system_error>

namespace Station {
namespace {

constexpr int kVideo = 0;
constexpr int kAudio = 1;

void SetExtra(AVCodecParameters& kind, const std::string& bytes)
{
    av_freep(&kind.extradata);
    kind.extradata_size = 0;
    kind.extradata = static_cast<std::uint8_t*>(av_mallocz(bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE));
    if (kind.extradata == nullptr)
        throw std::bad_alloc();
    std::memcpy(kind.extradata, bytes.data(), bytes.size());
    kind.extradata_size = static_cast<int>(bytes.size());
}

// How the picture is turned is told beside it.
void CopyRotation(const AVStream& source, AVStream& target)
{
    for (int i = 0; i < source.nb_side_data; ++i) {
        const AVPacketSideData& data = source.side_data[i];
        if (data.type != AV_PKT_DATA_DISPLAYMATRIX)
            continue;
        std::uint8_t* const copy = av_stream_new_side_data(&target, data.type, data.size);
        if (copy == nullptr)
            throw std::bad_alloc();
        std::memcpy(copy, data.data, data.size);
    }
}

av::Filter StartCodes(const AVStream& stream)
{
    AVBSFContext* filter = nullptr;
    Check(av_bsf_alloc(av_bsf_get_by_name("h264_mp4toannexb"), &filter), "The video can't be converted");
    av::Filter owner(filter);
    Check(avcodec_parameters_copy(filter->par_in, stream.codecpar), "The video can't be converted");
    filter->time_base_in = stream.time_base;
    Check(av_bsf_init(filter), "The video can't be converted");
    return owner;
}

}  // namespace

ClipWriter::ClipWriter(const std::filesystem::path& file, ClipFormat format, const ClipStreams& streams)
    : file_(file)
{
    const std::string name = "file:" + file.u8string();
    AVFormatContext* output = nullptr;
    const char* const form = format == ClipFormat::Avi ? "avi" : "mp4";
    Check(avformat_alloc_output_context2(&output, nullptr, form, name.c_str()), "The video can't be written");
    output_.reset(output);
    output->flags |= AVFMT_FLAG_BITEXACT;
    AddStream(*streams.video);
    AVStream& video = *output->streams[kVideo];
    SetExtra(*video.codecpar, streams.video_box);
    if (streams.has_sets_inside && format == ClipFormat::Mp4)
        video.codecpar->codec_tag = MKTAG('a', 'v', 'c', '3');
    if (streams.audio != nullptr)
        AddStream(*streams.audio);
    if (format == ClipFormat::Avi) {
        filter_ = StartCodes(video);
        Check(avcodec_parameters_copy(video.codecpar, filter_->par_out), "The video can't be converted");
        video.codecpar->codec_tag = 0;
        video.time_base = av_inv_q(video.avg_frame_rate);
    }
    Check(avio_open(&output->pb, name.c_str(), AVIO_FLAG_WRITE), file.u8string() + " can't be written");
    AVDictionary* words = nullptr;
    if (format == ClipFormat::Mp4)
        av_dict_set(&words, "movflags", "+faststart", 0);
    const int result = avformat_write_header(output, &words);
    const av::Options options(words);
    if (result < 0) {
        is_finished_ = true;
        avio_closep(&output->pb);
        std::error_code ignored;
        std::filesystem::remove(file_, ignored);
    }
    Check(result, file.u8string() + " can't be written");
}

ClipWriter::~ClipWriter()
{
    if (is_finished_)
        return;
    output_.reset();
    std::error_code ignored;
    std::filesystem::remove(file_, ignored);
}

void ClipWriter::AddStream(const AVStream& model)
{
    AVStream* const stream = avformat_new_stream(output_.get(), nullptr);
    if (stream == nullptr)
        throw std::bad_alloc();
    Check(avcodec_parameters_copy(stream->codecpar, model.codecpar), "The video can't be written");
    stream->codecpar->codec_tag = 0;
    stream->time_base = model.time_base;
    stream->avg_frame_rate = model.avg_frame_rate;
    stream->sample_aspect_ratio = model.sample_aspect_ratio;
    CopyRotation(model, *stream);
}

void ClipWriter::WriteVideo(AVPacket& packet, AVRational time_base)
{
    filter_base_ = time_base;
    if (filter_) {
        Filter(packet);
        return;
    }
    av_packet_rescale_ts(&packet, time_base, output_->streams[kVideo]->time_base);
    Write(packet, kVideo);
}

void ClipWriter::Filter(AVPacket& packet)
{
    Check(av_bsf_send_packet(filter_.get(), &packet), "The video can't be converted");
    while (av_bsf_receive_packet(filter_.get(), &packet) == 0) {
        av_packet_rescale_ts(&packet, filter_base_, output_->streams[kVideo]->time_base);
        Write(packet, kVideo);
    }
}

void ClipWriter::WriteAudio(AVPacket& packet, AVRational time_base)
{
    av_packet_rescale_ts(&packet, time_base, output_->streams[kAudio]->time_base);
    Write(packet, kAudio);
}

void ClipWriter::Write(AVPacket& packet, int stream)
{
    packet.stream_index = stream;
    packet.pos = -1;
    Check(av_interleaved_write_frame(output_.get(), &packet), file_.u8string() + " can't be written");
}

void ClipWriter::Finish()
{
    Check(av_write_trailer(output_.get()), file_.u8string() + " can't be written");
    avio_flush(output_->pb);
    const int result = output_->pb->error < 0 ? output_->pb->error : avio_closep(&output_->pb);
    Check(result, file_.u8string() + " can't be written");
    is_finished_ = true;
}

}  // namespace Station
