#include "MultimediaComm/PlayLocalFileEx.h"

#include "Video/Decoder.h"
#include "Video/Rotation.h"
#include "Video/SourceFile.h"
#include "Video/StillPicture.h"
#include "Video/VideoFailure.h"

#include <atomic>
#include <limits>
#include <map>

namespace Zell::MultimediaComm {
namespace {

constexpr int kJpeg = 1;
constexpr unsigned long kUnknownLength = static_cast<unsigned long>(-1);
constexpr AVRational kMilliseconds = {1, 1000};

// One open file, with its present picture once that was asked for.
class Player
{
public:
    explicit Player(const std::string& path) : source_(path, "", stop_), video_(source_.Video()) {}

    unsigned long Length() const
    {
        std::int64_t length = AV_NOPTS_VALUE;
        if (source_.Context().duration > 0)
            length = av_rescale_q(source_.Context().duration, AV_TIME_BASE_Q, kMilliseconds);
        else if (video_.duration > 0)
            length = av_rescale_q(video_.duration, video_.time_base, kMilliseconds);
        const bool is_known = length >= 0 && static_cast<std::uint64_t>(length) < kUnknownLength;
        return is_known ? static_cast<unsigned long>(length) : kUnknownLength;
    }

    std::string Picture()
    {
        if (!picture_)
            DecodeFirst();
        return EncodeJpeg(*picture_, QuarterTurns(video_));
    }

private:
    void DecodeFirst()
    {
        Decoder decoder(video_, [this](AVFrame& frame) {
            if (!picture_)
                picture_.reset(CheckMemory(av_frame_clone(&frame)));
        });
        const av::Packet packet = CheckMemory(av::MakePacket());
        while (!picture_ && source_.Read(*packet)) {
            if (packet->stream_index == video_.index)
                decoder.Take(*packet);
            av_packet_unref(packet.get());
        }
        if (!picture_)
            decoder.Finish();
        if (!picture_)
            throw VideoFailure(InfoOverlayNoVideo, "not one picture can be decoded");
    }

    std::atomic<bool> stop_{false};
    SourceFile source_;
    AVStream& video_;
    av::Frame picture_;
};

}  // namespace

struct CPlayLocalFileEx::Ports
{
    std::map<long, std::unique_ptr<Player>> players;
    long last = 0;

    Player* Find(long port)
    {
        const auto found = players.find(port);
        return found == players.end() ? nullptr : found->second.get();
    }
};

CPlayLocalFileEx::CPlayLocalFileEx() : ports_(std::make_unique<Ports>()) {}
CPlayLocalFileEx::~CPlayLocalFileEx() = default;

bool CPlayLocalFileEx::StartPlayLocalFile(long& port, const std::string& path, HWND /*window*/,
                                          unsigned long /*reserved*/)
{
    port = -1;
    return RunVideoWork("CPlayLocalFileEx::StartPlayLocalFile", [this, &port, &path] {
               auto player = std::make_unique<Player>(path);
               ports_->players[ports_->last + 1] = std::move(player);
               port = ++ports_->last;
           }) == InfoOverlayDone;
}

unsigned long CPlayLocalFileEx::GetFileTime(long port)
{
    const Player* const player = ports_->Find(port);
    return player == nullptr ? kUnknownLength : player->Length();
}

bool CPlayLocalFileEx::CaptureImage(std::string& data, long port, int kind)
{
    Player* const player = ports_->Find(port);
    if (player == nullptr || kind != kJpeg)
        return false;
    return RunVideoWork("CPlayLocalFileEx::CaptureImage", [&data, player] { data = player->Picture(); }) ==
           InfoOverlayDone;
}

void CPlayLocalFileEx::StopLocalFilePlay(long port)
{
    ports_->players.erase(port);
}

}  // namespace Zell::MultimediaComm
