#include "SiteRequest.h"

#include "ZellClientHostSettings/ClientSettings.h"

#include <algorithm>
#include <string_view>

namespace ZellTaskKit {
namespace {

char LowerCase(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
}

bool StartsWithNoCase(std::string_view text, std::string_view head)
{
    return text.size() >= head.size() &&
           std::equal(head.begin(), head.end(), text.begin(),
                      [](char left, char right) { return LowerCase(left) == LowerCase(right); });
}

bool IsUnreserved(char letter)
{
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '-' || letter == '.' || letter == '_' ||
           letter == '~';
}

}  // namespace

bool IsAbsoluteUrl(const std::string& url)
{
    return StartsWithNoCase(url, "http://") || StartsWithNoCase(url, "https://");
}

bool ResolveSiteUrl(std::string& url, unsigned int site)
{
    if (IsAbsoluteUrl(url))
        return true;
    std::string address;
    if (!ZellClientHost::GetSiteUrl(site, address) || address.empty())
        return false;
    if (address.back() == '/')
        address.pop_back();
    if (!url.empty() && url.front() != '/' && url.front() != '?')
        address += '/';
    url.insert(0, address);
    return true;
}

std::string PercentEncoded(const std::string& text)
{
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(text.size());
    for (const char letter : text) {
        if (IsUnreserved(letter)) {
            encoded += letter;
            continue;
        }
        const auto code = static_cast<unsigned char>(letter);
        encoded += '%';
        encoded += kHex[code >> 4];
        encoded += kHex[code & 15];
    }
    return encoded;
}

std::string WithQuery(const std::string& url, const std::map<std::string, std::string>& params)
{
    const std::size_t fragment = std::min(url.find('#'), url.size());
    std::string joined = url.substr(0, fragment);
    const std::size_t question = joined.find('?');
    bool needs_mark = question != std::string::npos && question + 1 < joined.size() && joined.back() != '&';
    if (question == std::string::npos && !params.empty())
        joined += '?';
    for (const auto& [name, value] : params) {
        if (needs_mark)
            joined += '&';
        joined += PercentEncoded(name) + "=" + PercentEncoded(value);
        needs_mark = true;
    }
    return joined + url.substr(fragment);
}

void AddAccount(ZellNetLink::HttpRequest& request)
{
    ZellClientHost::FindAccountOfUrl(request.url, request.user, request.password);
}

}  // namespace ZellTaskKit
