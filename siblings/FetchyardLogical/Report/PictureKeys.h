#pragma once

#include "FetchyardLogical/CmsGetPersonPicFileData.h"
#include "FetchyardLogical/ReportData.h"
#include "ZellPictureLoader/PictureLoader.h"

#include <memory>
#include <vector>

namespace FetchyardLogical::details {

// The keys of the page's pictures that the cache may hold, in the order in which a writer asks for them, each
// as the writer builds it. Empty for a text report (export_file_type 3), whose writer fetches none.
std::vector<std::shared_ptr<ZellPictureLoader::CImgUrlKey>> PictureKeys(const ExportDataNode& page);

// The same for the pictures of persons, which name no site.
std::vector<std::shared_ptr<ZellPictureLoader::CImgUrlKey>> PictureKeys(
    const std::vector<PersonPicture>& pictures);

}  // namespace FetchyardLogical::details
