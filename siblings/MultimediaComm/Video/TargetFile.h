#pragma once

#include "MultimediaCommHost/AvPointers.h"
#include "Video/WorkFile.h"

#include <atomic>
#include <string>
#include <vector>

namespace Zell::MultimediaComm {

class SourceFile;

// A video file that is written. It is made in the client's data folder, and gets its name when it is whole.
class TargetFile
{
public:
    // The form comes from the path's extension; without a known one it is the source's, mp4 in doubt. Throws
    // VideoFailure, as all else here.
    TargetFile(const std::string& path, const SourceFile& source, const std::string& password,
               const std::atomic<bool>& stop);

    bool IsAvi() const;
    // Whether encoders are to put their headers into the file's head instead of into the stream.
    bool WantsGlobalHeader() const;
    bool CanHold(AVCodecID codec) const;
    // The number of a new stream, which keeps the language, the rotation and the like of the one it comes
    // from. Without a frame rate (0/1) it has none.
    int AddStream(const AVStream& from, const AVCodecParameters& parameters, AVRational time_base,
                  AVRational frame_rate);
    void WriteHead(const AVFormatContext& from);
    // Takes the packet's content. Its times are in that base.
    void Write(AVPacket& packet, int stream, AVRational time_base);
    // Ends the file and puts it into its place.
    void Finish();

private:
    std::string path_;
    WorkFile file_;
    av::Output output_;
    std::vector<std::int64_t> last_times_;  // of each stream, in its base
};

}  // namespace Zell::MultimediaComm
