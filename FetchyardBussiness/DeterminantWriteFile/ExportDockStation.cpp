#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ImageDownload/PictureRequest.h"
#include "FetchyardBussiness/Log.h"

namespace FetchyardBussiness {

using ZellPictureLoader::CImgUrlKey;

// Files that hand-held devices have left at their dock stations. A file that fails never ends the export.
void CDeterminantWriteFileTask::FetchDockStationFiles(Run& run)
{
    VsFileParam& settings = run.Settings();
    settings.is_continue_dowinloading = true;
    if (!settings.map_device_log.empty() && !image_loader)
        image_loader = std::make_shared<ZellPictureLoader::CImageMultiSyncLoader>();
    for (const auto& [file_id, file] : settings.map_device_log) {
        FetchDockStationFile(run, file_id, file);
        // One flag alone does not end the walk.
        if (IsStopped() && IsDeleted()) {
            LogInfo("download image b_stop_ = %d, b_delete_ = %d", IsStopped(), IsDeleted());
            break;
        }
    }
}

void CDeterminantWriteFileTask::FetchDockStationFile(const Run& run, int file_id,
                                                     const std::pair<int, std::string>& file)
{
    constexpr auto dock_station_file = static_cast<CImgUrlKey::Type>(4);
    const VsFileParam& settings = run.Settings();
    const auto key = std::make_shared<CImgUrlKey>();
    key->SetValurl_type(dock_station_file);
    key->SetValdevice_id(static_cast<unsigned int>(file.first));
    key->SetValstrImageUrl(std::to_string(file_id));
    key->SetValis_Thumbnail_image(false);
    key->SetValb_save_cache(false);
    key->SetValidWorkStation(static_cast<unsigned int>(settings.request_site_id));
    const std::string target = settings.str_export_file_path + file.second;
    LogInfo("Start download  dockstation files :sync_load_param.save_full_name =  %s", target.c_str());
    ErrorCode error;
    if (!FetchPictureToFile(image_loader, key, target, error)) {
        LogError("CDeterminantWriteFileTask::Exec()  dockstation files download filed  ,file id = : %d",
                 file_id);
        RecordFailure(settings, file.second, error);
    }
    Zell::Base::Error::SetLastError(error);
}

}  // namespace FetchyardBussiness
