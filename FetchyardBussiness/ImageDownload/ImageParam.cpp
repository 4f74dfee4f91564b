#include "FetchyardBussiness/ImageDownload/ImageParam.h"

namespace FetchyardBussiness {

ImageParam::ImageParam() = default;
ImageParam::ImageParam(const ImageParam& other) = default;
ImageParam& ImageParam::operator=(const ImageParam& other) = default;
ImageParam::~ImageParam() = default;

}  // namespace FetchyardBussiness
