#include "FetchyardBussiness/ImageDownload/ImageDownloadTask.h"

#include "FetchyardBussiness/Log.h"

namespace FetchyardBussiness {

using Zell::Base::Error::ErrorCode;
using ZellPictureLoader::CImageSyncParam;
using ZellPictureLoader::CImgUrlKey;

CImageDownloadTask::CImageDownloadTask()
    : loader_(std::make_shared<ZellPictureLoader::CImageMultiSyncLoader>())
{
}

void CImageDownloadTask::Exec()
{
    NotifyTaskState(ZellTaskKit::Downloading);
    LogInfo("Start download image file.");
    const std::shared_ptr<ImageParam> param = GetDownloadTaskParam<ImageParam>();
    if (!param || !loader_) {
        NotifyTaskState(ZellTaskKit::Failed);
        LogError("download image file failed. create ptr failed. ");
        return;
    }
    LogInfo("Start download image file, task name: %s, task guid: %s, image save path: %s.",
            param->GetVal_str_name().c_str(), param->GetVal_str_guid().c_str(),
            param->GetVal_str_file_path().c_str());
    for (const ImageItem& item : param->image_items) {
        if (!FetchItem(*param, item))
            return;
    }
    NotifyTaskState(ZellTaskKit::Finished);
}

bool CImageDownloadTask::FetchItem(const ImageParam& param, const ImageItem& item)
{
    const auto key = std::make_shared<CImgUrlKey>();
    key->SetValb_save_cache(item.save_cache);
    key->SetValstrImageUrl(item.image_url);
    key->SetValidWorkStation(static_cast<unsigned int>(item.workstation_id));
    key->SetValaccess_type(static_cast<CImgUrlKey::AccessType>(item.access_type));
    key->SetValurl_type(static_cast<CImgUrlKey::Type>(item.image_type));
    key->SetValperson_id(static_cast<unsigned int>(item.person_id));

    const auto request = std::make_shared<CImageSyncParam>();
    request->image_param = key;
    request->save_full_name = param.GetVal_str_file_path() + param.GetVal_str_name();

    ErrorCode error;
    if (loader_->SyncLoadImage(error, request))
        return true;
    NotifyTaskState(ZellTaskKit::Failed);
    LogError("sync download image failed. first error code: %d, second error code: %d.", error.iFirstCode,
             error.iSecondCode);
    return false;
}

bool CImageDownloadTask::Stop()
{
    return false;
}

ZellTaskKit::CDownloadProgress CImageDownloadTask::GetProgress()
{
    return {};
}

bool CImageDownloadTask::Suspend()
{
    return false;
}

}  // namespace FetchyardBussiness
