#pragma once

#include "Video/Track.h"

#include <atomic>
#include <string>

namespace Zell::MultimediaComm {

// One file into another. Throws VideoFailure; the target is then as it was. With make_work the pictures are
// worked on, and always encoded; without it they are copied if the target's form can hold them. Sound is
// copied if possible. The other pictures of a file that has several streams of them are left out.
struct Conversion
{
    std::string source;
    std::string source_password;  // empty: a plain file
    std::string target;
    std::string target_password;  // empty: a plain file
    PictureWorkMaker make_work;
};
void Convert(const Conversion& conversion, const std::atomic<bool>& stop);

}  // namespace Zell::MultimediaComm
