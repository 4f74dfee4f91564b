#pragma once

#include "MultimediaCommHost/AvPointers.h"

#include <functional>

namespace Zell::MultimediaComm {

// Turns the packets of one stream into pictures or sound, on as many threads as the machine has.
class Decoder
{
public:
    using Sink = std::function<void(AVFrame& frame)>;

    // Throws VideoFailure if there is no decoder.
    Decoder(const AVStream& stream, Sink sink);

    // Hands on what comes out. A packet that can't be decoded is passed over and counted.
    void Take(const AVPacket& packet);
    // Hands on what is still inside.
    void Finish();
    int DamagedPackets() const { return damaged_; }
    const AVCodecContext& Context() const { return *codec_; }

private:
    void Send(const AVPacket* packet);
    void Receive();

    Sink sink_;
    av::Codec codec_;
    av::Frame frame_;
    int damaged_ = 0;
};

}  // namespace Zell::MultimediaComm
