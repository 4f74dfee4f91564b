#include "VideoLook.h"

#include <MultimediaCommHost/AvPointers.h>

#include <functional>
#include <stdexcept>

namespace SystemTest {
namespace {

namespace av = Zell::MultimediaComm::av;

constexpr int kBlocks = 32;
constexpr int kCodeLines = 16;
constexpr int kNumberBits = 5;

void Check(int result, const std::string& what)
{
    if (result < 0)
        throw std::runtime_error(what + ": " + av::ErrorText(result));
}

// The code's blocks, read at their middles; the brightness function takes x and y.
FrameTime ReadCode(int width, const std::function<int(int, int)>& brightness)
{
    const auto bits = [&](int count, int line) {
        std::int64_t value = 0;
        for (int i = 0; i < count; ++i)
            value = value << 1 | (brightness((2 * i + 1) * width / kBlocks / 2, line) > 128 ? 1 : 0);
        return value;
    };
    FrameTime time;
    time.second = bits(kBlocks, kCodeLines / 2);
    time.number = static_cast<int>(bits(kNumberBits, kCodeLines + kCodeLines / 2));
    return time;
}

av::Input Open(const std::string& path, int& video)
{
    AVFormatContext* input = nullptr;
    Check(avformat_open_input(&input, path.c_str(), nullptr, nullptr), path);
    av::Input owner(input);
    Check(avformat_find_stream_info(input, nullptr), path);
    video = av_find_best_stream(input, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    Check(video, path);
    return owner;
}

av::Codec Decoder(const AVStream& stream)
{
    const AVCodec* const kind = avcodec_find_decoder(stream.codecpar->codec_id);
    av::Codec codec(avcodec_alloc_context3(kind));
    Check(avcodec_parameters_to_context(codec.get(), stream.codecpar), "decoder");
    codec->err_recognition = AV_EF_EXPLODE | AV_EF_CRCCHECK | AV_EF_BITSTREAM;
    Check(avcodec_open2(codec.get(), kind, nullptr), "decoder");
    return codec;
}

}  // namespace

VideoLook::VideoLook(const std::string& path)
{
    int video = -1;
    const av::Input input = Open(path, video);
    const AVStream& stream = *input->streams[video];
    const av::Codec codec = Decoder(stream);
    const av::Packet packet = av::MakePacket();
    const av::Frame frame = av::MakeFrame();
    std::int64_t first = AV_NOPTS_VALUE;
    const auto take = [&](const AVPacket* sent) {
        Check(avcodec_send_packet(codec.get(), sent), "packet " + std::to_string(packets.size()));
        while (avcodec_receive_frame(codec.get(), frame.get()) >= 0) {
            first = first == AV_NOPTS_VALUE ? frame->best_effort_timestamp : first;
            const auto brightness = [&](int x, int y) { return frame->data[0][y * frame->linesize[0] + x]; };
            frames.push_back(
                {ReadCode(frame->width, brightness),
                 av_rescale_q(frame->best_effort_timestamp - first, stream.time_base, {1, 1000})});
            width = frame->width;
            height = frame->height;
        }
    };
    int result = 0;
    while ((result = av_read_frame(input.get(), packet.get())) >= 0) {
        if (packet->stream_index == video) {
            packets.push_back({std::string(reinterpret_cast<const char*>(packet->data),
                                           static_cast<std::size_t>(packet->size)),
                               (packet->flags & AV_PKT_FLAG_KEY) != 0});
            take(packet.get());
        } else {
            ++sound_packets;
        }
        av_packet_unref(packet.get());
    }
    if (result != AVERROR_EOF)
        Check(result, path);
    take(nullptr);
}

FrameTime ReadTime(const QImage& image)
{
    return ReadCode(image.width(), [&image](int x, int y) { return qGray(image.pixel(x, y)); });
}

bool RunsFrom(const VideoLook& video, std::int64_t second, int number)
{
    std::int64_t expected = FrameTime{second, number}.Count();
    for (const LookedFrame& frame : video.frames) {
        if (frame.time.Count() != expected++)
            return false;
    }
    return !video.frames.empty();
}

}  // namespace SystemTest
