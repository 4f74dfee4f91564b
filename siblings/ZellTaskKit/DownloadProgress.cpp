#include "ZellTaskKit/DownloadProgress.h"

namespace ZellTaskKit {

CDownloadProgress::CDownloadProgress() = default;
CDownloadProgress::CDownloadProgress(const CDownloadProgress& other) = default;
CDownloadProgress& CDownloadProgress::operator=(const CDownloadProgress& other) = default;
CDownloadProgress::~CDownloadProgress() = default;

unsigned long long CDownloadProgress::GetVal_finished_size() const
{
    return finished_size_;
}

void CDownloadProgress::SetVal_finished_size(const unsigned long long& kilobytes)
{
    finished_size_ = kilobytes;
}

}  // namespace ZellTaskKit
