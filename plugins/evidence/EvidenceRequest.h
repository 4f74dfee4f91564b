#pragma once

#include <string>

namespace Evidence {

// Registers an export at a station and returns the answer's text. The request is the "EvidenceParam" of an
// export request, JSON with
//   CaseNumber, Title   texts, both needed
//   Remark              text
//   SiteId              number of the site whose station keeps the evidence, 0 if absent
//   Folder              folder whose files are registered by name, size and SHA-256; none if absent
// The answer is {"Response":{"ErrorModule":..,"ErrorCode":..,"SearchXml":".."}}: SearchXml finds the entry
// again and is "<Evidence><EvidenceId>..</EvidenceId><RegisteredAt>..</RegisteredAt></Evidence>". The codes
// are (20, 3) for a request that is not of that form, (0, errno) for files that can't be read, and otherwise
// those of the station or of the way to it. Waits for the station, on the calling thread; throws nothing.
std::string Register(const std::string& request);

}  // namespace Evidence
