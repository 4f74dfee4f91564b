#include "FetchyardBussiness/ShortVideo/StoredObject.h"

namespace FetchyardBussiness {

bool IsKnownUploadType(int upload_type)
{
    return upload_type == kUploadPicture || upload_type == kUploadFile ||
           upload_type == kUploadLocalStoragePicture;
}

bool FetchStoredObjectFile(ZellTaskKit::CFileDownloader& downloader, int upload_type, const std::string& url,
                           const std::string& target, ZellTaskKit::CFileDownloader::StoragePlace place)
{
    switch (upload_type) {
        case kUploadPicture:
            return downloader.DownloadFileByPic(url, target, {}, nullptr, place);
        case kUploadFile:
            return downloader.DownloadFile(url, target, {}, nullptr, place);
        case kUploadLocalStoragePicture:
            return downloader.DownloadFileByPicInOXT(url, target, {}, nullptr);
        default:
            return false;
    }
}

bool FetchStoredObjectFile(ZellTaskKit::CFileDownloader& downloader, const ShortVideoItem& item)
{
    return FetchStoredObjectFile(downloader, item.EnumUpLoadType, item.str_shortvideo_url,
                                 item.save_path + item.file_name, item.EnumStoragePlace);
}

}  // namespace FetchyardBussiness
