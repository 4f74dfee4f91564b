#pragma once

#include "ZellNetLinkHost/HttpClient.h"

#include <map>
#include <string>

// Requests to the client's sites: addresses and the account.
namespace ZellTaskKit {

// Whether the url names its scheme: http or https, in any case of letters.
bool IsAbsoluteUrl(const std::string& url);
// The site's address with the path behind it; an absolute url stays as it is. False if the settings do not
// name the site.
bool ResolveSiteUrl(std::string& url, unsigned int site);
// Letters, digits and "-._~" stay, all other bytes become "%XX".
std::string PercentEncoded(const std::string& text);
// The url with the parameters behind its own query, if it has one, and in front of its fragment.
std::string WithQuery(const std::string& url, const std::map<std::string, std::string>& params);
// Adds the client's account if the url leads to one of the sites of its settings.
void AddAccount(ZellNetLink::HttpRequest& request);

}  // namespace ZellTaskKit
