#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"

namespace FetchyardBussiness {

DeterminantDownloadParam::DeterminantDownloadParam() = default;
DeterminantDownloadParam::DeterminantDownloadParam(const DeterminantDownloadParam& other) = default;
DeterminantDownloadParam& DeterminantDownloadParam::operator=(const DeterminantDownloadParam& other) =
    default;
DeterminantDownloadParam::~DeterminantDownloadParam() = default;

}  // namespace FetchyardBussiness
