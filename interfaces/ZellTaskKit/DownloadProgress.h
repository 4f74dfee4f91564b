#pragma once

#include "ZellTaskKit/Export.h"

namespace ZellTaskKit {

// How far a task has got.
class ZELLTASKKIT_API CDownloadProgress
{
public:
    CDownloadProgress();
    CDownloadProgress(const CDownloadProgress& other);
    CDownloadProgress& operator=(const CDownloadProgress& other);
    virtual ~CDownloadProgress();

    unsigned long long GetVal_finished_size() const;  // kilobytes (1,024 bytes) on disk
    void SetVal_finished_size(const unsigned long long& kilobytes);

private:
    unsigned long long finished_size_ = 0;
};

}  // namespace ZellTaskKit
