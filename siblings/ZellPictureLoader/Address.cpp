#include "Address.h"

#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellNetLinkHost/HttpClient.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string_view>

namespace ZellPictureLoader {
namespace {

using Zell::Base::Error::ErrorCode;

constexpr unsigned int kNoSiteNamed = 0xFFFFFFFFu;
constexpr std::string_view kNeverInAddress = "\"<>\\^`{|}";
constexpr std::string_view kUnreservedMarks = "-._~";

void AppendEncoded(std::string& text, unsigned char letter)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    text += '%';
    text += kDigits[letter >> 4];
    text += kDigits[letter & 15];
}

bool IsAsciiAlnum(unsigned char letter)
{
    return letter < 0x80 && std::isalnum(letter) != 0;
}

// An address as people write it: what is encoded already stays so.
std::string EncodeAddress(const std::string& address)
{
    std::string encoded;
    encoded.reserve(address.size());
    for (const char each : address) {
        const auto letter = static_cast<unsigned char>(each);
        if (letter <= 0x20 || letter >= 0x7F || kNeverInAddress.find(each) != std::string_view::npos)
            AppendEncoded(encoded, letter);
        else
            encoded += each;
    }
    return encoded;
}

// One part of a path: nothing in it may end the part.
std::string EncodePathPart(const std::string& part)
{
    std::string encoded;
    for (const char each : part) {
        const auto letter = static_cast<unsigned char>(each);
        if (IsAsciiAlnum(letter) || kUnreservedMarks.find(each) != std::string_view::npos)
            encoded += each;
        else
            AppendEncoded(encoded, letter);
    }
    return encoded;
}

// "name://" at the front, whatever the name: another protocol than http is refused by the transport, which
// knows how to say so.
bool HasScheme(const std::string& address)
{
    const std::size_t colon = address.find("://");
    if (colon == std::string::npos || colon == 0)
        return false;
    for (std::size_t i = 0; i < colon; ++i) {
        const auto letter = static_cast<unsigned char>(address[i]);
        if (!IsAsciiAlnum(letter) && letter != '+' && letter != '.' && letter != '-')
            return false;
    }
    return true;
}

std::string RawAddress(const CImgUrlKey& key)
{
    std::string address = key.GetValstrImageUrl();
    if (address.empty())
        return address;
    if (key.GetValurl_type() == kUrlTypeDockStation)
        return "/dock/" + std::to_string(key.GetValdevice_id()) + "/files/" + EncodePathPart(address);
    const std::string request = key.GetValstr_request();
    // An address without a "?" is handed over as both parts.
    if (key.GetValurl_type() == kUrlTypeDevice && !request.empty() && request != address)
        address += "?" + request;
    return address;
}

void AskForThumbnail(std::string& address)
{
    address += address.find('?') == std::string::npos ? '?' : '&';
    address += "thumbnail=1";
}

}  // namespace

bool BuildAddress(const CImgUrlKey& key, Address& address, ErrorCode& error)
{
    std::string raw = RawAddress(key);
    raw.erase(std::min(raw.find('#'), raw.size()));
    if (raw.empty()) {
        error = ErrorCode(ZellNetLink::kModuleTransport, kMalformedAddress);
        return false;
    }
    if (key.GetValis_Thumbnail_image())
        AskForThumbnail(raw);

    const unsigned int site = key.GetValidWorkStation() == kNoSiteNamed ? 0 : key.GetValidWorkStation();
    std::string site_url;
    const bool site_known = ZellClientHost::GetSiteUrl(site, site_url);
    if (HasScheme(raw)) {
        address.url = EncodeAddress(raw);
    } else if (site_known) {
        address.url = site_url + (raw.front() == '/' ? "" : "/") + EncodeAddress(raw);
    } else {
        error = ErrorCode(ZellNetLink::kModuleAnswer, ZellNetLink::SiteUnknown);
        return false;
    }
    ZellClientHost::FindAccountOfUrl(address.url, address.user, address.password);
    return true;
}

}  // namespace ZellPictureLoader
