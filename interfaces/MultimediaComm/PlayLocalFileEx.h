#pragma once

#include "MultimediaComm/Export.h"

#include <memory>
#include <string>

// The system's window handle, by the same declaration that Windows has.
struct HWND__;  // NOLINT(bugprone-reserved-identifier)
using HWND = HWND__*;

namespace Zell::MultimediaComm {

// Plays local video files, each on a port of its own. Any thread, one at a time for each object.
class MULTIMEDIACOMM_API CPlayLocalFileEx
{
public:
    CPlayLocalFileEx();
    CPlayLocalFileEx(const CPlayLocalFileEx&) = delete;
    CPlayLocalFileEx& operator=(const CPlayLocalFileEx&) = delete;
    virtual ~CPlayLocalFileEx();  // closes all ports

    // Opens the file (UTF-8) at its first picture; port gets a number of 1 or more, or -1 on failure. window
    // is null: nothing is shown. False, with the last error set, for a file that can't be read or holds no
    // video.
    bool StartPlayLocalFile(long& port, const std::string& path, HWND window, unsigned long reserved);
    // Length of the file in milliseconds; -1 in the unsigned form for a port that is not open or a file whose
    // length can't be told.
    unsigned long GetFileTime(long port);
    // The present picture, turned upright, in data; kind 1 is JPEG, the only one. False, with data as it was,
    // if there is no such port or the picture can't be decoded.
    bool CaptureImage(std::string& data, long port, int kind);
    // Closes the port; harmless for one that is not open.
    void StopLocalFilePlay(long port);

private:
    struct Ports;
    std::unique_ptr<Ports> ports_;
};

}  // namespace Zell::MultimediaComm
