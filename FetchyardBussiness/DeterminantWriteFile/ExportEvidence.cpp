#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/EvidenceExport.h"

namespace FetchyardBussiness {

// An answer without codes counts as accepted.
bool CDeterminantWriteFileTask::UploadFilesToEvidence(const std::string& evidence_param,
                                                      std::string& search_xml)
{
    ZellNetLink::CRapidJsonProto answer;
    if (!AskEvidenceService(evidence_param, answer))
        return false;
    const int error_module = answer.get_int_v("/Response/ErrorModule", 0);
    const int error_code = answer.get_int_v("/Response/ErrorCode", 0);
    search_xml = answer.get_v("/Response/SearchXml", "");
    return error_module == 0 && error_code == 0;
}

}  // namespace FetchyardBussiness
