#pragma once

#include "MultimediaComm/Export.h"

#include <string>

namespace Zell::MultimediaComm {

// Moves a video into a file of another form.
class MULTIMEDIACOMM_API CVideoFormatTransfer
{
public:
    CVideoFormatTransfer();
    CVideoFormatTransfer(const CVideoFormatTransfer&) = delete;
    CVideoFormatTransfer& operator=(const CVideoFormatTransfer&) = delete;
    virtual ~CVideoFormatTransfer();

    // Writes the video of source into target, whose extension names the form (".mp4", ".avi"); blocks until
    // done. Streams are copied as they are; only one that the form can't hold is encoded anew (pictures as
    // H.264, sound as AAC). The target appears whole or not at all; an existing one is replaced. The last two
    // arguments are 0 and empty. UTF-8. A protected source that StartCovert has written yields a protected
    // target. 0 for success; otherwise a number of InfoOverlayErr, with the last error set and the reason in
    // the log.
    int Translate(std::string& target, std::string source, int reserved, std::string reserved_text);
};

}  // namespace Zell::MultimediaComm
