#pragma once

#include "ZellNetLink/RapidJsonProto.h"
#include "ZellTaskKit/DownloadTypes.h"

#include <string>

namespace FetchyardBussiness {

// The state that an export reports: an evidence export has states of its own for start and end.
ZellTaskKit::DownloadState StateOfExport(bool is_evidence, ZellTaskKit::DownloadState state);

// Asks the client's evidence service to register an export, with the text that the export's caller gave.
// False if the request could not be sent; otherwise answer holds what came back, if it is JSON.
bool AskEvidenceService(const std::string& evidence_param, ZellNetLink::CRapidJsonProto& answer);

}  // namespace FetchyardBussiness
