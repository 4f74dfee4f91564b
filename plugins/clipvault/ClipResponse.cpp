#include "plugins/clipvault/ClipResponse.h"

#include "ZellNetLink/RapidJsonProto.h"

namespace ClipVault {

std::string WriteResponse(const ClipOutcome& outcome)
{
    ZellNetLink::CRapidJsonProto json;
    json.set_v("/Response/TaskDownloadState", static_cast<int>(outcome.state));
    json.set_v("/Response/ErrorModule", outcome.error.iFirstCode);
    json.set_v("/Response/ErrorCode", outcome.error.iSecondCode);
    int index = 0;
    for (const ResourceOutcome& resource : outcome.resources) {
        const std::string path = "/Response/ResourceDownloadState[" + std::to_string(++index) + "]";
        json.set_v(path + "/ResourceID", resource.resource_id);
        json.set_v(path + "/SiteID", resource.site_id);
        json.set_v(path + "/ResourceDownloadStateType", static_cast<int>(resource.state));
        json.set_v(path + "/ErrorModule", resource.error.iFirstCode);
        json.set_v(path + "/ErrorCode", resource.error.iSecondCode);
    }
    return json.get_str(0);
}

}  // namespace ClipVault
