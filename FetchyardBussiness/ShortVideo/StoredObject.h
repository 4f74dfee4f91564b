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

bool IsKnownUploadType(int upload_type);

// Fetches an object of a known type into its save_path + file_name, and waits.
bool FetchStoredObjectFile(ZellTaskKit::CFileDownloader& downloader, const ShortVideoItem& item);

}  // namespace FetchyardBussiness
