#pragma once

#include "FetchyardBussiness/Export.h"
#include "ZellPictureLoader/PictureLoader.h"
#include "ZellTaskKit/DownloadTaskParam.h"

#include <string>
#include <vector>

namespace FetchyardBussiness {

// One picture to fetch.
struct ImageItem
{
    bool save_cache = false;
    std::string image_url;
    int workstation_id = -1;
    int access_type = 0;  // ZellPictureLoader::CImgUrlKey::AccessType
    int image_type = 0;   // ZellPictureLoader::CImgUrlKey::Type
    int person_id = -1;
};

// Record of a picture download. All items are written to the one file str_file_path + str_name, each
// replacing the one before; str_file_path ends in a separator.
struct FETCHYARD_API ImageParam : public ZellTaskKit::CDownloadTaskParam
{
    ImageParam();
    ImageParam(const ImageParam& other);
    ImageParam& operator=(const ImageParam& other);
    ~ImageParam() override;

    std::vector<ImageItem> image_items;
};

}  // namespace FetchyardBussiness
