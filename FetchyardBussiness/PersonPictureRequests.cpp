#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/ReportExportRequests.h"

namespace FetchyardBussiness::details {

// Person pictures are not served by this version: such a request is refused in words and skipped.
std::shared_ptr<ZellTaskKit::CDownloadTaskBase> MakePersonPictureTask(const RequestReader& /*request*/)
{
    LogError("a request for person pictures is not served by this version and is skipped");
    return nullptr;
}

}  // namespace FetchyardBussiness::details
