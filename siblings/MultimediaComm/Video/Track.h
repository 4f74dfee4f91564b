#pragma once

#include "MultimediaCommHost/AvPointers.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace Zell::MultimediaComm {

class PictureFitter;
class SourceFile;
class TargetFile;

// The way of one stream from the source into the target. All calls throw VideoFailure.
class Track
{
public:
    Track() = default;
    Track(const Track&) = delete;
    Track& operator=(const Track&) = delete;
    virtual ~Track() = default;

    // A packet of this stream, in the order of the file. Its content may be taken.
    virtual void Take(AVPacket& packet) = 0;
    // Behind the last packet.
    virtual void Finish() = 0;
};

// What is done to each picture before it is encoded; milliseconds count from the first picture.
using PictureWork = std::function<void(AVFrame& picture, std::int64_t milliseconds)>;
// Told the size and colours of the pictures to come, before the first of them, and by how many quarters a
// player turns them clockwise.
using PictureWorkMaker = std::function<PictureWork(const PictureFitter& pictures, int quarter_turns)>;

// Decodes the pictures, lets the work be done on each, and encodes them.
std::unique_ptr<Track> MakeEncodedVideoTrack(SourceFile& source, AVStream& stream, TargetFile& target,
                                             const PictureWorkMaker& make_work);
// Copies the stream. A filter of FFmpeg's brings it into the target's form where that differs.
std::unique_ptr<Track> MakeCopiedTrack(const SourceFile& source, const AVStream& stream, TargetFile& target);
// Decodes the sound and encodes it as AAC.
std::unique_ptr<Track> MakeEncodedAudioTrack(const AVStream& stream, TargetFile& target);

}  // namespace Zell::MultimediaComm
