#pragma once

#include "FetchyardBussiness/FileDownload/FileExportParam.h"
#include "FetchyardBussiness/ImageDownload/ImageParam.h"
#include "FetchyardBussiness/ShortVideo/ShortVideoDownloadParam.h"
#include "FetchyardBussiness/VideoDownload/VideoTaskParam.h"

#include <string>

namespace FetchyardBussiness::details {

// Each reads the node of one kind of file out of a request. False, with a log line, if the text is no JSON.
bool ParseImageParam(ImageItem& item, std::string node);
bool ParseFileParam(FileExportItem& item, std::string node);
bool ParseVideoParam(VideoTaskParam& param, std::string node);
bool ParseShortVideoParam(ShortVideoItem& item, std::string node);

}  // namespace FetchyardBussiness::details
