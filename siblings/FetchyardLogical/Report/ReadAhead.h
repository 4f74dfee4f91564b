#pragma once

#include "FetchyardLogical/RequestData.h"
#include "ZellNetLinkHost/HttpClient.h"

// The next page of a report, on its way while the writer writes the one in hand. Each thread has one at most.
namespace FetchyardLogical::details {

// Lets the call go. What was on its way before is dropped.
void BeginReadAhead(const RequstData& request, ZellNetLink::HttpRequest call);
// Waits for the answer if just this request is on its way; false, with nothing on its way any more, if not.
bool TakeReadAhead(const RequstData& request, ZellNetLink::HttpResponse& answer);
void DropReadAhead();

}  // namespace FetchyardLogical::details
