// In place of all that reads or writes pictures of a video, where this library is built without FFmpeg.
#include "MultimediaComm/InfoOverlay.h"
#include "MultimediaComm/PlayLocalFileEx.h"
#include "MultimediaComm/VideoFormatTransfer.h"
#include "MultimediaCommHost/VideoStamper.h"
#include "Video/VideoFailure.h"

namespace Zell::MultimediaComm {
namespace {

InfoOverlayErr Refuse(const char* function)
{
    return EndOf(function, VideoFailure(InfoOverlayFailed, "this library was built without video"));
}

}  // namespace

bool InfoOverlay::IsHandleAvailable() const
{
    return false;
}

InfoOverlayErr StampVideo(const StampJob& /*job*/, const std::atomic<bool>& /*stop*/)
{
    return Refuse("StampVideo");
}

CVideoFormatTransfer::CVideoFormatTransfer() = default;
CVideoFormatTransfer::~CVideoFormatTransfer() = default;

int CVideoFormatTransfer::Translate(std::string& /*target*/, std::string /*source*/, int /*reserved*/,
                                    std::string /*reserved_text*/)
{
    return Refuse("CVideoFormatTransfer::Translate");
}

struct CPlayLocalFileEx::Ports
{
};

CPlayLocalFileEx::CPlayLocalFileEx() = default;
CPlayLocalFileEx::~CPlayLocalFileEx() = default;

bool CPlayLocalFileEx::StartPlayLocalFile(long& port, const std::string& /*path*/, HWND /*window*/,
                                          unsigned long /*reserved*/)
{
    port = -1;
    return Refuse("CPlayLocalFileEx::StartPlayLocalFile") == InfoOverlayDone;
}

unsigned long CPlayLocalFileEx::GetFileTime(long /*port*/)
{
    return static_cast<unsigned long>(-1);
}

bool CPlayLocalFileEx::CaptureImage(std::string& /*data*/, long /*port*/, int /*kind*/)
{
    return false;
}

void CPlayLocalFileEx::StopLocalFilePlay(long /*port*/) {}

}  // namespace Zell::MultimediaComm
