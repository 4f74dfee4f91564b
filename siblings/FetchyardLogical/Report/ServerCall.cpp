#include "Report/ServerCall.h"

#include "ZellClientHostSettings/ClientSettings.h"

#include <algorithm>
#include <utility>

using Zell::Base::Error::ErrorCode;
using ZellNetLink::HttpRequest;
using ZellNetLink::HttpResponse;

namespace FetchyardLogical::details {

namespace {

// A page is read into memory whole.
constexpr std::size_t kMaxPageBytes = std::size_t{256} << 20;

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

// Whether the url lies below the site's address.
bool IsOnSite(const std::string& url, const std::string& site_url)
{
    if (site_url.empty() || url.compare(0, site_url.size(), site_url) != 0)
        return false;
    return url.size() == site_url.size() || url[site_url.size()] == '/' || url[site_url.size()] == '?';
}

std::string Join(const std::string& site_url, const std::string& path)
{
    return site_url + (path.empty() || path.front() == '/' ? "" : "/") + path;
}

// The account goes to the client's own sites only, wherever an absolute address may point.
ErrorCode DescribeCall(const RequstData& request, HttpRequest& call)
{
    std::string site_url;
    const bool site_known = ZellClientHost::GetSiteUrl(static_cast<unsigned int>(request.site_id), site_url);
    if (!IsAbsolute(request.str_quern) && !site_known)
        return ErrorCode(2, ZellNetLink::kModuleAnswer, ZellNetLink::SiteUnknown);
    call.method = request.str_method.empty() ? "POST" : UpperCase(request.str_method);
    call.url = IsAbsolute(request.str_quern) ? request.str_quern : Join(site_url, request.str_quern);
    call.body = request.str_request;
    call.headers = {"Content-Type: application/json", "Accept: application/json"};
    call.max_body = kMaxPageBytes;
    if (site_known && IsOnSite(call.url, site_url)) {
        const ZellClientHost::ClientSettings settings = ZellClientHost::GetClientSettings();
        call.user = settings.user_name;
        call.password = settings.password;
    }
    return ErrorCode();
}

}  // namespace

bool IsFailure(const ErrorCode& error)
{
    return error.iFirstCode != 0 || error.iSecondCode != 0;
}

HttpResponse CallServer(const RequstData& request)
{
    HttpRequest call;
    HttpResponse answer;
    answer.error = DescribeCall(request, call);
    if (!IsFailure(answer.error))
        answer = ZellNetLink::HttpClient::Instance().Perform(std::move(call));
    return answer;
}

}  // namespace FetchyardLogical::details
