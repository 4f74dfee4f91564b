#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/EvidenceExport.h"
#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/ShortVideo/StoredObject.h"

namespace FetchyardBussiness {

using Zell::Base::Error::SetLastError;

namespace {

// Also says in the log what has failed.
Zell::Base::Error::ErrorCode ErrorOf(const ShortVideoItem& clip)
{
    const char* url = clip.str_shortvideo_url.c_str();
    switch (clip.EnumUpLoadType) {
        case kUploadPicture:
            LogError(
                "download pic object iter_param.str_shortvideo_url = %s, iter_param.EnumStoragePlace = %d",
                url, clip.EnumStoragePlace);
            return OwnError(kErrorPicture);
        case kUploadFile:
            LogError(
                "download file object iter_param.str_shortvideo_url = %s, iter_param.EnumStoragePlace = %d",
                url, clip.EnumStoragePlace);
            return OwnError(kErrorFetch);
        default:
            LogError(
                "download PIC_OXT object iter_param.str_shortvideo_url = %s, iter_param.EnumStoragePlace = "
                "%d",
                url, clip.EnumStoragePlace);
            return Zell::Base::Error::GetLastError();
    }
}

}  // namespace

bool CDeterminantWriteFileTask::FetchStoredObjects(DeterminantDownloadParam& param, bool is_evidence)
{
    if (!file_downloader)
        file_downloader = std::make_shared<ZellTaskKit::CFileDownloader>();
    for (ShortVideoEntry& entry : param.vs_file_param_.vec_short_video) {
        if (entry.is_has_download)
            continue;
        // One flag is enough here.
        if (IsStopped() || IsDeleted()) {
            LogInfo("download object b_stop_ = %d, b_delete_ = %d", IsStopped(), IsDeleted());
            break;
        }
        if (!FetchStoredObject(param, entry, is_evidence))
            return false;
    }
    return true;
}

bool CDeterminantWriteFileTask::FetchStoredObject(DeterminantDownloadParam& param, ShortVideoEntry& entry,
                                                  bool is_evidence)
{
    const ShortVideoItem& clip = entry.clip;
    if (!IsKnownUploadType(clip.EnumUpLoadType))
        return true;
    if (FetchStoredObjectFile(*file_downloader, clip)) {
        entry.is_has_download = true;
        return true;
    }
    const ErrorCode error = ErrorOf(clip);
    return !EndsWithStoredObject(param, clip, error, is_evidence);
}

// A failed object ends an export that does not go on after a failure.
bool CDeterminantWriteFileTask::EndsWithStoredObject(DeterminantDownloadParam& param,
                                                     const ShortVideoItem& clip, const ErrorCode& error,
                                                     bool is_evidence)
{
    if (param.vs_file_param_.is_continue_dowinloading) {
        std::string reason = ReasonText(error);
        if (clip.EnumUpLoadType == kUploadFile)
            reason = clip.str_shortvideo_url + " " + reason;
        error_file_map.emplace(clip.file_name, reason);
        // A picture of the local storage leaves no code.
        if (clip.EnumUpLoadType != kUploadLocalStoragePicture)
            error_code_map.emplace(error.iSecondCode, error.iFirstCode);
        SetErrorCodeJsonToUp();
        return false;
    }
    if (clip.EnumUpLoadType == kUploadFile)
        LogError("CDeterminantWriteFileTask::Exec()  video download filed");
    else
        LogError("CDeterminantWriteFileTask::Exec()  PIC_OXT download filed");
    if (clip.EnumUpLoadType != kUploadLocalStoragePicture)
        SetLastError(error);
    NotifyTaskState(StateOfExport(is_evidence, ZellTaskKit::Failed));
    return true;
}

bool CDeterminantWriteFileTask::DonloadFileFromOXTLocalStorage(int upload_type, std::string save_path,
                                                               std::string url, EnumStoragePlace place)
{
    if (!file_downloader)
        file_downloader = std::make_shared<ZellTaskKit::CFileDownloader>();
    if (!IsKnownUploadType(upload_type) ||
        FetchStoredObjectFile(*file_downloader, upload_type, url, save_path, place))
        return true;
    switch (upload_type) {
        case kUploadPicture:
            LogError("download pic object file_url = %s, palce = %d", url.c_str(), place);
            LogError("CDeterminantWriteFileTask::DonloadFileFromCairn()   EnumUpLoadType::Pic filed");
            SetLastError(OwnError(kErrorPicture));
            break;
        case kUploadFile:
            LogError("download file object file_url = %s, palce = %d", url.c_str(), place);
            LogError("CDeterminantWriteFileTask::DonloadFileFromCairn()  EnumUpLoadType::File filed");
            SetLastError(OwnError(kErrorFetch));
            break;
        default:
            LogError("download PIC_OXT object file_url = %s, palce = %d", url.c_str(), place);
            LogError("CDeterminantWriteFileTask::DonloadFileFromCairn()   EnumUpLoadType::PIC_OXT filed");
            SetLastError(OwnError(kErrorLocalStoragePicture));
            break;
    }
    return false;
}

}  // namespace FetchyardBussiness
