#pragma once

#include "FetchyardBussiness/ImageDownload/ImageParam.h"
#include "ZellPictureLoader/PictureLoader.h"
#include "ZellTaskKit/DownloadTaskBase.h"

#include <memory>

namespace FetchyardBussiness {

// Fetches the pictures of an ImageParam one after the other. Can't be stopped: it runs through its list.
class CImageDownloadTask : public ZellTaskKit::CDownloadTaskBase
{
public:
    CImageDownloadTask();

    // States: 1, then 4, or 5 at the first picture that fails. The loader's error goes to the log only.
    void Exec() override;
    bool Stop() override;
    ZellTaskKit::CDownloadProgress GetProgress() override;
    bool Suspend() override;

private:
    bool FetchItem(const ImageParam& param, const ImageItem& item);

    std::shared_ptr<ZellPictureLoader::CImageMultiSyncLoader> loader_;
};

}  // namespace FetchyardBussiness
