#include "Video/TargetFile.h"

#include "Video/SourceFile.h"
#include "Video/VideoFailure.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <string_view>

namespace Zell::MultimediaComm {
namespace {

struct Form
{
    std::string_view extension;
    const char* name;
};
constexpr std::array<Form, 5> kForms = {
    {{".mp4", "mp4"}, {".avi", "avi"}, {".mov", "mov"}, {".mkv", "matroska"}, {".ts", "mpegts"}}};

const char* FormOf(const std::string& path, const SourceFile& source)
{
    std::string extension = std::filesystem::u8path(path).extension().u8string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    for (const Form& form : kForms) {
        if (extension == form.extension)
            return form.name;
    }
    return source.IsForm("avi") ? "avi" : "mp4";
}

void CopySideData(const AVStream& from, AVStream& to)
{
    for (int i = 0; i < from.nb_side_data; ++i) {
        const AVPacketSideData& data = from.side_data[i];
        // The size of an encoder's buffer is that of the encoder which is at work.
        if (data.type == AV_PKT_DATA_CPB_PROPERTIES)
            continue;
        std::uint8_t* const copy = CheckMemory(av_stream_new_side_data(&to, data.type, data.size));
        std::memcpy(copy, data.data, data.size);
    }
}

}  // namespace

TargetFile::TargetFile(const std::string& path, const SourceFile& source, const std::string& password,
                       const std::atomic<bool>& stop)
    : path_(path), file_(password, stop)
{
    AVFormatContext* context = nullptr;
    Check(avformat_alloc_output_context2(&context, nullptr, FormOf(path, source), nullptr), InfoOverlayFailed,
          path);
    output_.reset(context);
    context->pb = file_.Io();
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    // Sound that begins a little before the first picture would else move all pictures of an AVI by one.
    if (IsAvi())
        context->avoid_negative_ts = AVFMT_AVOID_NEG_TS_DISABLED;
}

bool TargetFile::IsAvi() const
{
    return std::strcmp(output_->oformat->name, "avi") == 0;
}

bool TargetFile::WantsGlobalHeader() const
{
    return (output_->oformat->flags & AVFMT_GLOBALHEADER) != 0;
}

bool TargetFile::CanHold(AVCodecID codec) const
{
    return avformat_query_codec(output_->oformat, codec, FF_COMPLIANCE_NORMAL) == 1;
}

int TargetFile::AddStream(const AVStream& from, const AVCodecParameters& parameters, AVRational time_base,
                          AVRational frame_rate)
{
    AVStream* const stream = CheckMemory(avformat_new_stream(output_.get(), nullptr));
    Check(avcodec_parameters_copy(stream->codecpar, &parameters), InfoOverlayFailed, path_);
    // The four letters by which a form names the codec stay where it knows them: some players go by them.
    const AVCodecTag* const* const tags = output_->oformat->codec_tag;
    if (tags == nullptr || av_codec_get_id(tags, parameters.codec_tag) != parameters.codec_id)
        stream->codecpar->codec_tag = 0;
    stream->sample_aspect_ratio = from.sample_aspect_ratio;
    stream->disposition = from.disposition;
    Check(av_dict_copy(&stream->metadata, from.metadata, 0), InfoOverlayFailed, path_);
    // Of the codec that was, not of the one that is.
    av_dict_set(&stream->metadata, "encoder", nullptr, 0);
    CopySideData(from, *stream);
    const bool has_rate = frame_rate.num > 0 && frame_rate.den > 0;
    if (has_rate)
        stream->avg_frame_rate = frame_rate;
    // An AVI counts its pictures, so a time in it is a number of pictures.
    stream->time_base = has_rate && IsAvi() ? av_inv_q(frame_rate) : time_base;
    last_times_.push_back(AV_NOPTS_VALUE);
    return stream->index;
}

void TargetFile::WriteHead(const AVFormatContext& from)
{
    Check(av_dict_copy(&output_->metadata, from.metadata, 0), InfoOverlayFailed, path_);
    const int result = avformat_write_header(output_.get(), nullptr);
    file_.CheckWrites();
    Check(result, InfoOverlayFailed, path_);
}

void TargetFile::Write(AVPacket& packet, int stream, AVRational time_base)
{
    const AVStream& to = *output_->streams[stream];
    av_packet_rescale_ts(&packet, time_base, to.time_base);
    std::int64_t& last = last_times_[static_cast<std::size_t>(stream)];
    if (packet.dts == AV_NOPTS_VALUE)
        packet.dts = packet.pts;
    // A coarser clock may give two packets one time.
    if (last != AV_NOPTS_VALUE && packet.dts != AV_NOPTS_VALUE && packet.dts <= last)
        packet.dts = last + 1;
    if (packet.pts != AV_NOPTS_VALUE)
        packet.pts = std::max(packet.pts, packet.dts);
    else
        packet.pts = packet.dts;
    if (packet.dts != AV_NOPTS_VALUE)
        last = packet.dts;
    packet.stream_index = stream;
    packet.pos = -1;
    const int result = av_interleaved_write_frame(output_.get(), &packet);
    file_.CheckWrites();
    Check(result, InfoOverlayFailed, path_);
}

void TargetFile::Finish()
{
    const int result = av_write_trailer(output_.get());
    file_.CheckWrites();
    Check(result, InfoOverlayFailed, path_);
    file_.Place(path_);
}

}  // namespace Zell::MultimediaComm
