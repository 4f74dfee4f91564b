#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ImageDownload/PictureRequest.h"
#include "FetchyardBussiness/Log.h"

namespace FetchyardBussiness {

bool CDeterminantWriteFileTask::DownloadPictures()
{
    const auto param = GetDownloadTaskParam<DeterminantDownloadParam>();
    if (!param) {
        LogError("DownloadPictures ptr_determinant_control_param is null!");
        return false;
    }
    std::vector<ImageDownloadEntry>& pictures = param->vs_file_param_.vec_image_download;
    if (!pictures.empty() && !image_loader)
        image_loader = std::make_shared<ZellPictureLoader::CImageMultiSyncLoader>();
    for (std::size_t index = 0; index < pictures.size(); ++index) {
        ImageDownloadEntry& entry = pictures[index];
        if (entry.is_has_download || entry.image.image_items.empty())
            continue;
        entry.is_has_download = FetchPicture(*param, entry);
        // One flag alone does not end the walk: a stopped export fetches all its pictures first.
        if (IsStopped() && IsDeleted()) {
            LogInfo("download image b_stop_ = %d, b_delete_ = %d", IsStopped(), IsDeleted());
            break;
        }
    }
    SetDownloadTaskParam(param, false);
    return true;
}

// The thread's last error is that of the latest picture, also when it is none.
bool CDeterminantWriteFileTask::FetchPicture(DeterminantDownloadParam& param, ImageDownloadEntry& entry)
{
    const VsFileParam& settings = param.vs_file_param_;
    const auto key = MakePictureKey(entry.image.image_items.front().image_url,
                                    static_cast<unsigned int>(settings.request_site_id));
    const std::string name = entry.image.GetVal_str_name();
    const std::string target = entry.image.GetVal_str_file_path() + name;
    LogInfo("Start image download :sync_load_param.save_full_name =  %s", target.c_str());
    ErrorCode error;
    const bool fetched = FetchPictureToFile(image_loader, key, target, error);
    if (!fetched) {
        LogError(
            "CDeterminantWriteFileTask::Exec()  image download filed  , ptr_img_url_key->strImageUrl = : %s",
            key->GetValstrImageUrl().c_str());
        RecordFailure(settings, name, error);
    }
    Zell::Base::Error::SetLastError(error);
    return fetched;
}

}  // namespace FetchyardBussiness
