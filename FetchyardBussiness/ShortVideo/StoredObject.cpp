#include "FetchyardBussiness/ShortVideo/StoredObject.h"

namespace FetchyardBussiness {

bool IsKnownUploadType(int upload_type)
{
    return upload_type == kUploadPicture || upload_type == kUploadFile ||
           upload_type == kUploadLocalStoragePicture;
}

bool FetchStoredObjectFile(ZellTaskKit::CFileDownloader& downloader, const ShortVideoItem& item)
{
    const std::string& url = item.str_shortvideo_url;
    const std::string target = item.save_path + item.file_name;
    switch (item.EnumUpLoadType) {
        case kUploadPicture:
            return downloader.DownloadFileByPic(url, target, {}, nullptr, item.EnumStoragePlace);
        case kUploadFile:
            return downloader.DownloadFile(url, target, {}, nullptr, item.EnumStoragePlace);
        case kUploadLocalStoragePicture:
            return downloader.DownloadFileByPicInOXT(url, target, {}, nullptr);
        default:
            return false;
    }
}

}  // namespace FetchyardBussiness
