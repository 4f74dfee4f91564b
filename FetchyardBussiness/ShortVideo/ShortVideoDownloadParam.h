#pragma once

#include "FetchyardBussiness/Export.h"
#include "ZellTaskKit/DownloadTaskParam.h"

#include <string>
#include <vector>

namespace FetchyardBussiness {

// One clip or other object kept on a storage.
struct ShortVideoItem
{
    std::string file_name;
    std::string save_path;
    std::string str_shortvideo_url;
    int EnumUpLoadType = 1;    // the call that fetches it: 0 picture, 1 file, 2 picture of the local storage
    int EnumStoragePlace = 1;  // ZellTaskKit::CFileDownloader::StoragePlace
};

// Record of a download of clips.
struct FETCHYARD_API ShortVideoDownloadParam : public ZellTaskKit::CDownloadTaskParam
{
    ShortVideoDownloadParam();
    ShortVideoDownloadParam(const ShortVideoDownloadParam& other);
    ShortVideoDownloadParam& operator=(const ShortVideoDownloadParam& other);
    ~ShortVideoDownloadParam() override;

    std::vector<ShortVideoItem> clips;
};

}  // namespace FetchyardBussiness
