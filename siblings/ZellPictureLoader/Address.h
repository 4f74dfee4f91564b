#pragma once

#include "ZellBase/Error.h"
#include "ZellPictureLoader/PictureLoader.h"

#include <string>

namespace ZellPictureLoader {

// Kinds of address that are put together in their own way.
inline constexpr int kUrlTypeDockStation = 4;
inline constexpr int kUrlTypeDevice = 17;
// libcurl's code for an address that is none.
inline constexpr int kMalformedAddress = 3;

// Where a picture is fetched and as whom.
struct Address
{
    std::string url;  // percent-encoded, http or https
    std::string user;
    std::string password;
};

// Puts the address of a key together:
//   device (17)       strImageUrl "?" str_request; strImageUrl alone if the request is empty or the same text
//   dock station (4)  /dock/DEVICE_ID/files/STRIMAGEURL
//   any other         strImageUrl
// An absolute http or https address stays as it is, any other belongs to the site (idWorkStation, of which -1
// stands for the client's own). The small form is asked for by "thumbnail=1" in the query. Letters that an
// address can't hold are percent-encoded; a fragment is cut off. The client's account goes along to its sites
// and nowhere else.
// False: (22, 3) for an empty address, (23, SiteUnknown) for a site that the settings do not name.
bool BuildAddress(const CImgUrlKey& key, Address& address, Zell::Base::Error::ErrorCode& error);

}  // namespace ZellPictureLoader
