#include "FetchyardBussiness/VideoDownload/VideoTaskParam.h"

namespace FetchyardBussiness {

VideoTaskParam::VideoTaskParam() = default;
VideoTaskParam::VideoTaskParam(const VideoTaskParam& other) = default;
VideoTaskParam& VideoTaskParam::operator=(const VideoTaskParam& other) = default;
VideoTaskParam::~VideoTaskParam() = default;

}  // namespace FetchyardBussiness
