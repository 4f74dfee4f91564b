#pragma once

#include "plugins/clipvault/ClipFile.h"
#include "plugins/clipvault/ClipRequest.h"

#include <string>

namespace ClipVault {

// What a site is asked for.
struct ClipQuestion
{
    std::string site_url;  // without a final "/"
    std::string resource_id;
    ClipTime time;
    bool is_avi = false;
};

// Fetches the video of the question into the file, piece by piece; what broke off is taken up again. The
// begin of what there is comes back as a time text, empty if the site does not say it. (0, 0), or what went
// wrong.
Zell::Base::Error::ErrorCode FetchClip(const ClipQuestion& question, Download& download, ClipFile& file,
                                       std::string& begin);
// Fetches the frame of that time as JPEG.
Zell::Base::Error::ErrorCode FetchFrame(const ClipQuestion& question, const std::string& time,
                                        Download& download, ClipFile& file);

}  // namespace ClipVault
