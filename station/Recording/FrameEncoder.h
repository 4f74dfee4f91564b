#pragma once

#include "station/Recording/Clip.h"
#include "station/Recording/ParameterSets.h"

#include <MultimediaCommHost/AvPointers.h>

#include <functional>
#include <string>

namespace Station {

namespace av = Zell::MultimediaComm::av;

// Throws VideoError with the words if the number is an error.
void Check(int result, const std::string& what);
// Owners of memory that is there.
av::Frame NewFrame();
av::Packet NewPacket();

// How frames become H.264. Frames come in 4:2:0 with eight bits.
struct EncoderPlan
{
    int width = 0;
    int height = 0;
    AVRational time_base = {1, 25};
    AVRational frame_rate = {25, 1};
    AVRational pixel_shape = {0, 1};
    AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
    AVColorPrimaries primaries = AVCOL_PRI_UNSPECIFIED;
    AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;
    AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
    const char* preset = "veryfast";
    const char* profile = "high";
    int quality = 20;         // smaller is better
    bool is_even = false;     // the same for all parts of all pictures, which is faster
    int group = 50;           // frames from one key frame to the next; 0: only the first is one
    int threads = 0;          // 0: as many as there are processors
    unsigned set_number = 0;  // of the parameter sets, 0 to 31
};

// H.264 without B-frames: what goes in comes out in the same order, as units with lengths and without
// parameter sets.
class FrameEncoder
{
public:
    // Gets each packet, in the plan's time base.
    using Sink = std::function<void(AVPacket&)>;

    // Throws VideoError, as all of these do.
    explicit FrameEncoder(const EncoderPlan& plan);

    // The frame's pts counts; its kind of picture does not.
    void Encode(AVFrame& frame, const Sink& sink);
    void Finish(const Sink& sink);
    const ParameterSets& Sets() const { return sets_; }
    // What the encoder makes, for a writer to take after.
    const AVStream& Stream() const { return *form_->streams[0]; }

private:
    void MakeStream();
    void Send(const AVFrame* frame, const Sink& sink);

    av::Codec codec_;
    av::Packet packet_;
    av::Output form_;  // holds the stream
    ParameterSets sets_;
};

// A packet with other bytes, and all else as in the source.
av::Packet WithBytes(const AVPacket& source, const std::string& bytes);

}  // namespace Station
