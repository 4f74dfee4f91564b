#pragma once

#include "MultimediaCommHost/AvPointers.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace Zell::MultimediaComm {

// A video file that is read, plain or protected. One thread; each call ends soon after stop is up.
class SourceFile
{
public:
    // Opens and looks into the streams. Throws VideoFailure.
    SourceFile(const std::string& path, const std::string& password, const std::atomic<bool>& stop);
    SourceFile(const SourceFile&) = delete;
    SourceFile& operator=(const SourceFile&) = delete;
    ~SourceFile();

    AVFormatContext& Context() const { return *input_; }
    // The stream with the pictures. Throws VideoFailure if there is none.
    AVStream& Video() const;
    // Whether the form is one of FFmpeg's name, such as "avi".
    bool IsForm(const char* name) const;
    // The next packet of any stream, with its times counted from the start of the file; false at the end. A
    // file that breaks off is at its end there, and a warning is logged.
    bool Read(AVPacket& packet);
    // Throws VideoFailure if stop is up.
    void CheckStop() const;

private:
    class Bytes;

    std::string path_;
    const std::atomic<bool>& stop_;
    std::unique_ptr<Bytes> bytes_;
    av::IoStream io_;
    av::Input input_;
};

}  // namespace Zell::MultimediaComm
