#include "MultimediaCommHost/AvPointers.h"
#include "Video/VideoFailure.h"

namespace Zell::MultimediaComm {

int Check(int returned, InfoOverlayErr result, const std::string& what)
{
    if (returned >= 0)
        return returned;
    if (returned == AVERROR_EXIT)
        throw VideoFailure(InfoOverlayStopped, "stopped");
    throw VideoFailure(result, what + ": " + av::ErrorText(returned));
}

}  // namespace Zell::MultimediaComm
