#include "FetchyardBussiness/ShortVideo/ShortVideoDownloadParam.h"

namespace FetchyardBussiness {

ShortVideoDownloadParam::ShortVideoDownloadParam() = default;
ShortVideoDownloadParam::ShortVideoDownloadParam(const ShortVideoDownloadParam& other) = default;
ShortVideoDownloadParam& ShortVideoDownloadParam::operator=(const ShortVideoDownloadParam& other) = default;
ShortVideoDownloadParam::~ShortVideoDownloadParam() = default;

}  // namespace FetchyardBussiness
