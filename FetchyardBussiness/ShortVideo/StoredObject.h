#pragma once

#include "FetchyardBussiness/ShortVideo/ShortVideoDownloadParam.h"
#include "ZellTaskKit/FileDownloader.h"

namespace FetchyardBussiness {

// EnumUpLoadType of a stored object: the call that fetches it.
enum UploadType : int {
    kUploadPicture = 0,
    kUploadFile = 1,
    kUploadLocalStoragePicture = 2,
};

// EnumStoragePlace of the files that a server has gathered.
inline constexpr int kLocalStorage = 0;

bool IsKnownUploadType(int upload_type);

// Fetches an object of a known type into a file, and waits.
bool FetchStoredObjectFile(ZellTaskKit::CFileDownloader& downloader, int upload_type, const std::string& url,
                           const std::string& target, ZellTaskKit::CFileDownloader::StoragePlace place);
// The same into the item's save_path + file_name.
bool FetchStoredObjectFile(ZellTaskKit::CFileDownloader& downloader, const ShortVideoItem& item);

}  // namespace FetchyardBussiness
