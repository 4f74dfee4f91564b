#pragma once

#include "MultimediaComm/InfoOverlay.h"
#include "ZellBase/Error.h"

#include <stdexcept>
#include <string>

namespace Zell::MultimediaComm {

// How work on a video ends early. Thrown inside this library only; each exported call turns it into its
// result.
class VideoFailure : public std::runtime_error
{
public:
    // system_error is 0 where the system had no part in it.
    VideoFailure(InfoOverlayErr result, const std::string& reason, int system_error = 0);

    InfoOverlayErr Result() const { return result_; }
    Zell::Base::Error::ErrorCode Error() const { return error_; }

private:
    InfoOverlayErr result_;
    Zell::Base::Error::ErrorCode error_;
};

// Passes on what a call of FFmpeg returned, or throws: as a stop if a callback was told to end, otherwise
// with this result and what + ": " + the library's words.
int Check(int returned, InfoOverlayErr result, const std::string& what);
// For calls that return null when there is no memory.
template <typename Pointer>
Pointer CheckMemory(Pointer pointer)
{
    if (!pointer)
        throw VideoFailure(InfoOverlayFailed, "there is no memory");
    return pointer;
}

// Runs the work of an exported call. 0, or the result of what it threw; then the thread's last error is set
// and the log has a line with the function and the reason.
template <typename Work>
InfoOverlayErr RunVideoWork(const char* function, Work&& work);

// For RunVideoWork.
InfoOverlayErr EndOf(const char* function, const VideoFailure& failure);

template <typename Work>
InfoOverlayErr RunVideoWork(const char* function, Work&& work)
{
    try {
        work();
        return InfoOverlayDone;
    } catch (const VideoFailure& failure) {
        return EndOf(function, failure);
    } catch (const std::exception& failure) {
        return EndOf(function, VideoFailure(InfoOverlayFailed, failure.what()));
    }
}

}  // namespace Zell::MultimediaComm
