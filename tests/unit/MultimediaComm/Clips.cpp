#include "Clips.h"

#include "MultimediaCommHost/AvPointers.h"

#include <gtest/gtest.h>

extern "C" {
#include <libavutil/display.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>

namespace clips {
namespace {

namespace av = Zell::MultimediaComm::av;

void Demand(bool is_good, const std::string& what)
{
    if (!is_good)
        throw std::runtime_error(what);
}

std::string Text(const char* text)
{
    return text == nullptr ? "" : text;
}

av::Input Open(const std::string& path)
{
    AVFormatContext* context = nullptr;
    Demand(avformat_open_input(&context, path.c_str(), nullptr, nullptr) == 0, path + " can't be opened");
    av::Input input(context);
    Demand(avformat_find_stream_info(context, nullptr) >= 0, path + " can't be read");
    return input;
}

StreamFacts FactsOf(const AVStream& stream)
{
    const AVCodecParameters& parameters = *stream.codecpar;
    StreamFacts facts;
    facts.codec = avcodec_get_name(parameters.codec_id);
    facts.kind = Text(av_get_media_type_string(parameters.codec_type));
    facts.width = parameters.width;
    facts.height = parameters.height;
    facts.is_interlaced =
        parameters.field_order != AV_FIELD_UNKNOWN && parameters.field_order != AV_FIELD_PROGRESSIVE;
    facts.range = Text(av_color_range_name(parameters.color_range));
    facts.space = Text(av_color_space_name(parameters.color_space));
    facts.primaries = Text(av_color_primaries_name(parameters.color_primaries));
    facts.transfer = Text(av_color_transfer_name(parameters.color_trc));
    const std::uint8_t* const matrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (matrix != nullptr)
        facts.quarter_turns = static_cast<int>(
            std::lround(-av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix)) / 90));
    return facts;
}

Picture ToRgb(const AVFrame& frame, double seconds)
{
    Picture picture;
    picture.width = frame.width;
    picture.height = frame.height;
    picture.seconds = seconds;
    picture.rgb.resize(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height) * 3);
    const av::Scaler scaler(
        sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), frame.width,
                       frame.height, AV_PIX_FMT_RGB24, SWS_BILINEAR, nullptr, nullptr, nullptr));
    const int* const table =
        sws_getCoefficients(frame.colorspace == AVCOL_SPC_UNSPECIFIED ? SWS_CS_DEFAULT : frame.colorspace);
    sws_setColorspaceDetails(scaler.get(), table, frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0,
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
    std::uint8_t* planes[1] = {picture.rgb.data()};
    const int steps[1] = {frame.width * 3};
    sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes, steps);
    return picture;
}

av::Codec OpenDecoder(const AVStream& stream)
{
    const AVCodec* const codec = avcodec_find_decoder(stream.codecpar->codec_id);
    av::Codec decoder(avcodec_alloc_context3(codec));
    Demand(avcodec_parameters_to_context(decoder.get(), stream.codecpar) == 0 &&
               avcodec_open2(decoder.get(), codec, nullptr) == 0,
           "no decoder");
    return decoder;
}

}  // namespace

void Make(const std::string& arguments, const std::string& path)
{
    const std::string command = "ffmpeg -nostdin -v error -y " + arguments + " \"" + path + "\"";
    Demand(std::system(command.c_str()) == 0, command);
}

std::string MakeMoving(const std::string& path, int seconds, const std::string& size)
{
    const std::string length = std::to_string(seconds);
    Make("-f lavfi -i testsrc2=s=" + size + ":r=25:d=" + length + " -f lavfi -i sine=f=440:d=" + length +
             " -c:v libx264 -preset ultrafast -c:a aac",
         path);
    return path;
}

std::string MakePlain(const std::string& path, const std::string& colour, double seconds,
                      const std::string& size)
{
    Make("-f lavfi -i color=c=" + colour + ":s=" + size + ":r=25:d=" + std::to_string(seconds) +
             " -pix_fmt yuv420p -c:v libx264 -preset ultrafast",
         path);
    return path;
}

void WriteFile(const std::string& path, const std::string& content)
{
    std::ofstream(path, std::ios::binary) << content;
}

std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

const StreamFacts& FileFacts::Of(const std::string& kind) const
{
    const auto found = std::find_if(streams.begin(), streams.end(),
                                    [&kind](const StreamFacts& stream) { return stream.kind == kind; });
    Demand(found != streams.end(), "no stream of kind " + kind);
    return *found;
}

FileFacts Look(const std::string& path)
{
    const av::Input input = Open(path);
    FileFacts facts;
    facts.form = input->iformat->name;
    facts.seconds = static_cast<double>(input->duration) / AV_TIME_BASE;
    std::vector<std::string> bytes(input->nb_streams);
    for (unsigned i = 0; i < input->nb_streams; ++i)
        facts.streams.push_back(FactsOf(*input->streams[i]));
    const av::Packet packet = av::MakePacket();
    while (av_read_frame(input.get(), packet.get()) >= 0) {
        const auto index = static_cast<std::size_t>(packet->stream_index);
        ++facts.streams[index].packets;
        bytes[index].append(reinterpret_cast<const char*>(packet->data),
                            static_cast<std::size_t>(packet->size));
        av_packet_unref(packet.get());
    }
    for (std::size_t i = 0; i < bytes.size(); ++i)
        facts.streams[i].packet_hash = std::to_string(std::hash<std::string>()(bytes[i]));
    return facts;
}

std::vector<Picture> Pictures(const std::string& path)
{
    const av::Input input = Open(path);
    const int index = av_find_best_stream(input.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    Demand(index >= 0, path + " holds no video");
    const AVStream& stream = *input->streams[index];
    const av::Codec decoder = OpenDecoder(stream);
    const av::Packet packet = av::MakePacket();
    const av::Frame frame = av::MakeFrame();
    std::vector<Picture> pictures;
    const auto receive = [&] {
        while (avcodec_receive_frame(decoder.get(), frame.get()) == 0)
            pictures.push_back(
                ToRgb(*frame, static_cast<double>(frame->best_effort_timestamp) * av_q2d(stream.time_base)));
    };
    while (av_read_frame(input.get(), packet.get()) >= 0) {
        if (packet->stream_index == index && avcodec_send_packet(decoder.get(), packet.get()) == 0)
            receive();
        av_packet_unref(packet.get());
    }
    avcodec_send_packet(decoder.get(), nullptr);
    receive();
    return pictures;
}

std::array<int, 3> Picture::At(int x, int y) const
{
    const std::size_t place =
        (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) * 3;
    return {rgb[place], rgb[place + 1], rgb[place + 2]};
}

int Picture::Brightness(int x, int y) const
{
    const std::array<int, 3> colour = At(x, y);
    return (colour[0] * 299 + colour[1] * 587 + colour[2] * 114) / 1000;
}

Box BrighterThan(const Picture& picture, int brightness)
{
    Box box = {picture.width, picture.height, -1, -1};
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (picture.Brightness(x, y) <= brightness)
                continue;
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
                   std::max(box.bottom, y)};
        }
    }
    return box;
}

double DistanceOutside(const Picture& one, const Picture& other, const Box& box)
{
    Demand(one.width == other.width && one.height == other.height, "the pictures differ in size");
    double sum = 0;
    double count = 0;
    for (int y = 0; y < one.height; ++y) {
        for (int x = 0; x < one.width; ++x) {
            if (x >= box.left && x <= box.right && y >= box.top && y <= box.bottom)
                continue;
            const std::array<int, 3> a = one.At(x, y);
            const std::array<int, 3> b = other.At(x, y);
            sum += std::abs(a[0] - b[0]) + std::abs(a[1] - b[1]) + std::abs(a[2] - b[2]);
            count += 3;
        }
    }
    return count == 0 ? 0 : sum / count;
}

}  // namespace clips
