#include "Report/ServerCall.h"

#include "ZellClientHostSettings/ClientSettings.h"

#include <algorithm>
#include <iterator>
#include <utility>

using Zell::Base::Error::ErrorCode;
using ZellNetLink::HttpRequest;
using ZellNetLink::HttpResponse;

namespace FetchyardLogical::details {

namespace {

// A page is read into memory whole.
constexpr std::size_t kMaxPageBytes = std::size_t{256} << 20;
constexpr unsigned long kShortAnswerMs = 10000;

char ToUpper(char letter)
{
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

std::string UpperCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), ToUpper);
    return text;
}

bool IsAbsolute(const std::string& url)
{
    const std::string head = UpperCase(url.substr(0, 8));
    return head.compare(0, 7, "HTTP://") == 0 || head == "HTTPS://";
}

std::string Join(const std::string& site_url, const std::string& path)
{
    return site_url + (path.empty() || path.front() == '/' ? "" : "/") + path;
}

// "http://host:port" of an absolute address.
std::string ServerOf(const std::string& url)
{
    const std::size_t host = url.find("://") + 3;
    return url.substr(0, url.find_first_of("/?#", host));
}

HttpResponse Call(const RequstData& request, unsigned long timeout_ms)
{
    HttpRequest call;
    HttpResponse answer;
    answer.error = DescribeCall(request, call);
    call.timeout_ms = timeout_ms;
    if (!IsFailure(answer.error))
        answer = ZellNetLink::HttpClient::Instance().Perform(std::move(call));
    return answer;
}

}  // namespace

bool IsFailure(const ErrorCode& error)
{
    return error.iFirstCode != 0 || error.iSecondCode != 0;
}

ErrorCode DescribeCall(const RequstData& request, HttpRequest& call)
{
    std::string site_url;
    const bool is_absolute = IsAbsolute(request.str_quern);
    if (!is_absolute && !ZellClientHost::GetSiteUrl(static_cast<unsigned int>(request.site_id), site_url))
        return ErrorCode(2, ZellNetLink::kModuleAnswer, ZellNetLink::SiteUnknown);
    call.method = request.str_method.empty() ? "POST" : UpperCase(request.str_method);
    call.url = is_absolute ? request.str_quern : Join(site_url, request.str_quern);
    call.body = request.str_request;
    call.headers = {"Content-Type: application/json", "Accept: application/json"};
    call.max_body = kMaxPageBytes;
    ZellClientHost::FindAccountOfUrl(call.url, call.user, call.password);
    return ErrorCode();
}

HttpResponse CallServer(const RequstData& request)
{
    return Call(request, HttpRequest().timeout_ms);
}

ErrorCode AskServer(const RequstData& request, ZellNetLink::CRapidJsonProto& answer)
{
    const HttpResponse response = Call(request, kShortAnswerMs);
    if (IsFailure(response.error) || response.body.empty())
        return response.error;
    if (!answer.set_str(response.body))
        return ErrorCode(2, ZellNetLink::kModuleAnswer, ZellNetLink::AnswerNotUnderstood);
    return ErrorCode(2, answer.get_int_v("/ErrorModule", 0), answer.get_int_v("/ErrorCode", 0));
}

bool IsPassing(const ErrorCode& error)
{
    constexpr int not_passing[] = {1,  3,  23, 27,
                                   35, 47, 58, 60};  // libcurl: the address, a limit, a certificate
    if (error.iFirstCode == ZellNetLink::kModuleHttp)
        return error.iSecondCode >= 500 || error.iSecondCode == 408 || error.iSecondCode == 429;
    return error.iFirstCode == ZellNetLink::kModuleTransport &&
           std::find(std::begin(not_passing), std::end(not_passing), error.iSecondCode) ==
               std::end(not_passing);
}

std::string WholeAddress(const std::string& address, const RequstData& asked)
{
    if (address.empty() || IsAbsolute(address))
        return address;
    std::string base;
    if (!IsAbsolute(asked.str_quern)) {
        if (!ZellClientHost::GetSiteUrl(static_cast<unsigned int>(asked.site_id), base))
            return address;
    } else if (!ZellClientHost::FindSiteOfUrl(asked.str_quern, base)) {
        base = ServerOf(asked.str_quern);
    }
    return Join(base, address);
}

}  // namespace FetchyardLogical::details
