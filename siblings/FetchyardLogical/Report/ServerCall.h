#pragma once

#include "FetchyardLogical/RequestData.h"
#include "ZellNetLinkHost/HttpClient.h"

namespace FetchyardLogical::details {

bool IsFailure(const Zell::Base::Error::ErrorCode& error);

// Sends the request to its site and waits for the answer, on the calling thread. An absolute address is used
// as it stands, any other is joined to the site's; a method is sent in upper case, none is POST. The client's
// account goes along to the site only. (23, 4) if the settings do not name the site that is needed; otherwise
// error is what HttpClient gives.
ZellNetLink::HttpResponse CallServer(const RequstData& request);

}  // namespace FetchyardLogical::details
