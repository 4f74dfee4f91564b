#pragma once

#include "FetchyardLogical/RequestData.h"
#include "ZellNetLinkHost/HttpClient.h"

// The calls of whoever asks for page after page.
namespace FetchyardLogical::details {

// The answer to the request: the one that is on its way to this thread already, or else that of a call now.
ZellNetLink::HttpResponse CallForPage(const RequstData& request);

// Lets the page behind this one come while this one is worked on. Only inside a task of the engine, and only
// if the request's text names its page.
void FetchNextPageAhead(const RequstData& request);

}  // namespace FetchyardLogical::details
