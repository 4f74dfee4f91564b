#include "ZellTaskKit/NetCommManager.h"

#include "SiteRequest.h"

#include <algorithm>
#include <utility>

ZELL_SINGLETON_DEFINE(ZellTaskKit::CNetCommManager)

namespace ZellTaskKit {
namespace {

using Zell::Base::Error::ErrorCode;

constexpr unsigned long kDefaultTimeoutMs = 60000;
constexpr ErrorCode kWrongInput(2, 20, 3);
constexpr ErrorCode kUnknownSite(2, ZellNetLink::kModuleAnswer, ZellNetLink::SiteUnknown);

std::string UpperCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 32) : letter;
    });
    return text;
}

// Pattern 0 takes the url as it stands, with or without a scheme; a path from the root can only be one of the
// site's all the same.
bool StandsAsItIs(const std::string& url, ZellNetLink::NetlibWrapper::RequestPattern pattern)
{
    return pattern == 0 && !url.empty() && url.front() != '/';
}

bool MakeRequest(const ZellNetLink::CClientSendContentTypeInfo& send, unsigned int site,
                 ZellNetLink::HttpRequest& request)
{
    request.url = send.GetVal_URL();
    if (!StandsAsItIs(request.url, send.GetVal_Pattern()) && !ResolveSiteUrl(request.url, site))
        return false;
    request.url = WithQuery(request.url, send.GetVal_Query_Params());
    const std::string method = UpperCase(send.GetVal_Method());
    if (!method.empty())
        request.method = method;
    request.body = send.GetVal_send_data();
    if (request.body.empty())
        request.body = send.GetVal_Request_Data();
    if (!request.body.empty())
        request.headers.emplace_back("Content-Type: application/json");
    request.timeout_ms = send.GetVal_Timeout() == 0 ? kDefaultTimeoutMs : send.GetVal_Timeout();
    AddAccount(request);
    return true;
}

bool Fail(ZellNetLink::CClientRecvInfo& recv, const ErrorCode& error)
{
    recv.SetVal_Receive_Data({});
    recv.SetVal_Error_code(error);
    return false;
}

}  // namespace

bool CNetCommManager::ClientSynSend(std::shared_ptr<ZellNetLink::CClientRecvInfo>& recv,
                                    std::shared_ptr<ZellNetLink::CClientSendContentTypeInfo> send,
                                    unsigned int site)
{
    if (!recv)
        recv = std::make_shared<ZellNetLink::CClientRecvInfo>();
    if (!send)
        return Fail(*recv, kWrongInput);
    ZellNetLink::HttpRequest request;
    if (!MakeRequest(*send, site, request))
        return Fail(*recv, kUnknownSite);
    ZellNetLink::HttpResponse response = ZellNetLink::HttpClient::Instance().Perform(std::move(request));
    if (response.error.iFirstCode != 0 || response.error.iSecondCode != 0)
        return Fail(*recv, response.error);
    recv->SetVal_Error_code(ErrorCode());
    recv->SetVal_Receive_Data(std::move(response.body));
    return true;
}

}  // namespace ZellTaskKit
