#pragma once

#include "plugins/clipvault/ClipRequest.h"
#include "plugins/clipvault/ClipResponse.h"
#include "plugins/clipvault/Downloads.h"

namespace ClipVault {

// Carries a request out: each file is fetched and put in its place before the next. After a failure the
// resource's other files are not fetched, those of the next resource are. A download that was stopped leaves
// none of its files.
ClipOutcome CarryOut(const ClipRequest& request, Download& download);

}  // namespace ClipVault
