#include "MultimediaComm/InfoOverlay.h"
#include "MultimediaCommHost/VideoStamper.h"
#include "Video/VideoFailure.h"

#include <atomic>

namespace Zell::MultimediaComm {

struct InfoOverlay::Run
{
    std::atomic<bool> stop{false};
};

void InfoOverlay::SetWaterMarkParam(const CWaterMarkParam& watermark)
{
    watermark_ = watermark;
}

void InfoOverlay::SetSrcFilePathStr(const std::string& path)
{
    source_ = path;
}

void InfoOverlay::SetDstFilePathStr(const std::string& path)
{
    target_ = path;
}

InfoOverlayErr InfoOverlay::StartCovert()
{
    const auto run = std::make_shared<Run>();
    {
        const std::lock_guard<std::mutex> lock(run_mutex_);
        if (run_)
            return EndOf("InfoOverlay::StartCovert",
                         VideoFailure(InfoOverlayBusy, "this overlay stamps already"));
        run_ = run;
    }
    const InfoOverlayErr result =
        StampVideo({source_, target_, line_array_type_, lines_, watermark_}, run->stop);
    const std::lock_guard<std::mutex> lock(run_mutex_);
    run_.reset();
    return result;
}

void InfoOverlay::StopCovert()
{
    const std::lock_guard<std::mutex> lock(run_mutex_);
    if (run_)
        run_->stop = true;
}

}  // namespace Zell::MultimediaComm
