#include "MultimediaComm/PlayLocalFileEx.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

namespace Zell::MultimediaComm {

struct CPlayLocalFileEx::Ports
{
};

CPlayLocalFileEx::CPlayLocalFileEx() = default;
CPlayLocalFileEx::~CPlayLocalFileEx() = default;

bool CPlayLocalFileEx::StartPlayLocalFile(long& port, const std::string& path, HWND window,
                                          unsigned long reserved)
{
    const bool succeeds =
        fakes::Call("StartPlayLocalFile",
                    path + (window == nullptr ? " no window " : " window ") + std::to_string(reserved));
    port = succeeds ? 1 : -1;
    return succeeds;
}

unsigned long CPlayLocalFileEx::GetFileTime(long port)
{
    return fakes::Call("GetFileTime", std::to_string(port)) ? fakes::TheScript().video_length
                                                            : static_cast<unsigned long>(-1);
}

bool CPlayLocalFileEx::CaptureImage(std::string& data, long port, int kind)
{
    if (!fakes::Call("CaptureImage", std::to_string(port) + " " + std::to_string(kind)))
        return false;
    data = fakes::TheScript().captured_picture;
    return true;
}

void CPlayLocalFileEx::StopLocalFilePlay(long port)
{
    fakes::Call("StopLocalFilePlay", std::to_string(port));
}

}  // namespace Zell::MultimediaComm
