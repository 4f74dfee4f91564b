#pragma once

#include "FetchyardLogical/RequestData.h"
#include "ZellNetLink/RapidJsonProto.h"
#include "ZellNetLinkHost/HttpClient.h"

#include <string>

namespace FetchyardLogical::details {

bool IsFailure(const Zell::Base::Error::ErrorCode& error);

// What HttpClient needs to send the request to its site. An absolute address is used as it stands, any other
// is joined to the site's; a method is sent in upper case, none is POST. The client's account goes along to
// its own sites only. (23, 4) if the settings do not name the site that is needed.
Zell::Base::Error::ErrorCode DescribeCall(const RequstData& request, ZellNetLink::HttpRequest& call);

// Sends the request and waits for the answer, on the calling thread. error is that of DescribeCall, or what
// HttpClient gives.
ZellNetLink::HttpResponse CallServer(const RequstData& request);

// The same for a short answer, which is read: error is also what the server says in "ErrorModule" and
// "ErrorCode", or (23, 1) for a body that is neither empty nor JSON. An answer is waited for 10 seconds.
Zell::Base::Error::ErrorCode AskServer(const RequstData& request, ZellNetLink::CRapidJsonProto& answer);

// Whether the same question may get an answer the next time: the server could not be reached, or has trouble
// of its own.
bool IsPassing(const Zell::Base::Error::ErrorCode& error);

// The whole address of what the answer to a request names: below the same site, or the same server if that is
// none of the client's. An address that is whole or empty stays.
std::string WholeAddress(const std::string& address, const RequstData& asked);

}  // namespace FetchyardLogical::details
