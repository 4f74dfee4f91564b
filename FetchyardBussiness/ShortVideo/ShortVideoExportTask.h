#pragma once

#include "FetchyardBussiness/ShortVideo/ShortVideoDownloadParam.h"
#include "ZellTaskKit/DownloadTaskBase.h"
#include "ZellTaskKit/FileDownloader.h"

#include <memory>

namespace FetchyardBussiness {

// Fetches the clips of a ShortVideoDownloadParam one after the other; their folders must be there. Can't be
// stopped, and tries every clip.
class CShortVideoExportTask : public ZellTaskKit::CDownloadTaskBase
{
public:
    CShortVideoExportTask();

    // States: 1, then 4, or 5 if a clip failed.
    void Exec() override;
    bool Stop() override;  // does nothing: true
    ZellTaskKit::CDownloadProgress GetProgress() override;
    bool Suspend() override;  // does nothing: true

private:
    std::shared_ptr<ZellTaskKit::CFileDownloader> downloader_;
};

}  // namespace FetchyardBussiness
