#pragma once

#include "FetchyardBussiness/VideoDownload/VideoTaskParam.h"
#include "ZellTaskKit/DownloadTaskBase.h"

namespace FetchyardBussiness {

// Hands the requests of a VideoTaskParam to the video plug-in, one after the other. State 4 says that all
// were taken; the downloads themselves are the plug-in's. Can't be stopped.
class CVideoDownloadTask : public ZellTaskKit::CDownloadTaskBase
{
public:
    // States: 1, then 4, or 5 at the first request that is refused.
    void Exec() override;
    bool Stop() override;  // does nothing: true
    ZellTaskKit::CDownloadProgress GetProgress() override;
    bool Suspend() override;  // does nothing: true
};

}  // namespace FetchyardBussiness
