#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/Log.h"
#include "ZellNetLink/RapidJsonProto.h"
#include "ZellTaskKit/PluginComm.h"

namespace FetchyardBussiness {

using ZellTaskKit::CPluginCommData;

// An answer without codes counts as accepted.
bool CDeterminantWriteFileTask::UploadFilesToEvidence(const std::string& evidence_param,
                                                      std::string& search_xml)
{
    const auto request = std::make_shared<CPluginCommData>(evidence_param, nullptr);
    LogInfo("Request API: /API/Evidence/V0/CreateEvidence, request message : %s.", evidence_param.c_str());
    std::shared_ptr<CPluginCommData> answer;
    if (!ZellTaskKit::CPluginCommManager::Instance().DoRequest(answer, "/API/Evidence/V0/CreateEvidence",
                                                               request)) {
        LogError("Do request failed.");
        return false;
    }
    std::string text;
    if (answer)
        answer->JsonTxt(text);
    ZellNetLink::CRapidJsonProto response;
    response.set_str(text);
    const int error_module = response.get_int_v("/Response/ErrorModule", 0);
    const int error_code = response.get_int_v("/Response/ErrorCode", 0);
    search_xml = response.get_v("/Response/SearchXml", "");
    return error_module == 0 && error_code == 0;
}

}  // namespace FetchyardBussiness
