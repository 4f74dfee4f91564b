#include "Video/Conversion.h"

#include "Video/SourceFile.h"
#include "Video/TargetFile.h"
#include "Video/VideoFailure.h"
#include "Video/VideoLog.h"

#include <filesystem>
#include <vector>

namespace Zell::MultimediaComm {
namespace {

void RefuseSameFile(const Conversion& conversion)
{
    namespace fs = std::filesystem;
    std::error_code ignored;
    if (conversion.target.empty())
        throw VideoFailure(InfoOverlayTargetUnwritable, "the target has no name");
    if (fs::equivalent(fs::u8path(conversion.source), fs::u8path(conversion.target), ignored))
        throw VideoFailure(InfoOverlayTargetUnwritable, conversion.target + " is the source itself");
    if (fs::is_directory(fs::u8path(conversion.target), ignored))
        throw VideoFailure(InfoOverlayTargetUnwritable, conversion.target + " is a folder");
}

// An AVI has no times for pictures that are stored in another order than they show.
bool HasUnknownTimes(const SourceFile& source, const AVStream& stream, const TargetFile& target)
{
    return source.IsForm("avi") && !target.IsAvi() && stream.codecpar->video_delay > 0;
}

std::unique_ptr<Track> VideoTrack(SourceFile& source, AVStream& stream, TargetFile& target,
                                  const PictureWorkMaker& make_work)
{
    if (make_work || !target.CanHold(stream.codecpar->codec_id) || HasUnknownTimes(source, stream, target))
        return MakeEncodedVideoTrack(source, stream, target, make_work);
    return MakeCopiedTrack(source, stream, target);
}

std::unique_ptr<Track> SideTrack(const SourceFile& source, const AVStream& stream, TargetFile& target)
{
    const bool is_held = target.CanHold(stream.codecpar->codec_id);
    const AVMediaType type = stream.codecpar->codec_type;
    if (is_held && (type == AVMEDIA_TYPE_AUDIO || type == AVMEDIA_TYPE_SUBTITLE))
        return MakeCopiedTrack(source, stream, target);
    if (type == AVMEDIA_TYPE_AUDIO && avcodec_find_decoder(stream.codecpar->codec_id) != nullptr)
        return MakeEncodedAudioTrack(stream, target);
    WriteVideoLog(Base::details::kLogWarning, "Convert",
                  "stream " + std::to_string(stream.index) + " (" +
                      avcodec_get_name(stream.codecpar->codec_id) + ") is left out");
    return nullptr;
}

}  // namespace

void Convert(const Conversion& conversion, const std::atomic<bool>& stop)
{
    RefuseSameFile(conversion);
    SourceFile source(conversion.source, conversion.source_password, stop);
    AVStream& video = source.Video();
    TargetFile target(conversion.target, source, conversion.target_password, stop);
    const AVFormatContext& context = source.Context();
    std::vector<std::unique_ptr<Track>> tracks(context.nb_streams);
    for (unsigned i = 0; i < context.nb_streams; ++i)
        tracks[i] = context.streams[i] == &video ? VideoTrack(source, video, target, conversion.make_work)
                                                 : SideTrack(source, *context.streams[i], target);
    target.WriteHead(context);
    const av::Packet packet = CheckMemory(av::MakePacket());
    while (source.Read(*packet)) {
        const auto index = static_cast<std::size_t>(packet->stream_index);
        if (index < tracks.size() && tracks[index])
            tracks[index]->Take(*packet);
        av_packet_unref(packet.get());
    }
    for (const auto& track : tracks) {
        if (track)
            track->Finish();
    }
    target.Finish();
}

}  // namespace Zell::MultimediaComm
