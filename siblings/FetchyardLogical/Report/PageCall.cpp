#include "Report/PageCall.h"

#include "Engine/Engine.h"
#include "Report/NextPage.h"
#include "Report/ReadAhead.h"
#include "Report/ServerCall.h"

#include <utility>

namespace FetchyardLogical::details {

ZellNetLink::HttpResponse CallForPage(const RequstData& request)
{
    ZellNetLink::HttpResponse answer;
    return TakeReadAhead(request, answer) ? answer : CallServer(request);
}

void FetchNextPageAhead(const RequstData& request)
{
    if (!IsTaskThread())
        return;
    RequstData next = request;
    next.str_request = RequestOfNextPage(request.str_request);
    ZellNetLink::HttpRequest call;
    if (!next.str_request.empty() && !IsFailure(DescribeCall(next, call)))
        BeginReadAhead(next, std::move(call));
}

}  // namespace FetchyardLogical::details
