#include "FetchyardBussiness/EvidenceExport.h"

#include "FetchyardBussiness/Log.h"
#include "ZellTaskKit/PluginComm.h"

#include <memory>

namespace FetchyardBussiness {

using ZellTaskKit::CPluginCommData;

ZellTaskKit::DownloadState StateOfExport(bool is_evidence, ZellTaskKit::DownloadState state)
{
    if (!is_evidence)
        return state;
    switch (state) {
        case ZellTaskKit::Downloading:
            return ZellTaskKit::Uploading;
        case ZellTaskKit::Finished:
            return ZellTaskKit::UploadFinished;
        case ZellTaskKit::Failed:
            return ZellTaskKit::UploadFailed;
        case ZellTaskKit::Stopped:
            return ZellTaskKit::UploadStopped;
        default:
            return state;
    }
}

bool AskEvidenceService(const std::string& evidence_param, ZellNetLink::CRapidJsonProto& answer)
{
    const auto request = std::make_shared<CPluginCommData>(evidence_param, nullptr);
    LogInfo("Request API: /API/Evidence/V0/CreateEvidence, request message : %s.", evidence_param.c_str());
    std::shared_ptr<CPluginCommData> reply;
    if (!ZellTaskKit::CPluginCommManager::Instance().DoRequest(reply, "/API/Evidence/V0/CreateEvidence",
                                                               request)) {
        LogError("Do request failed.");
        return false;
    }
    std::string text;
    if (reply)
        reply->JsonTxt(text);
    answer.set_str(text);
    return true;
}

}  // namespace FetchyardBussiness
