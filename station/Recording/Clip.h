#pragma once

#include <stdexcept>
#include <string>

namespace Station {

enum class ClipFormat { Mp4, Avi };

// A video could not be read or made; what() says why.
class VideoError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
    // With the words of an error number of FFmpeg's libraries behind its own.
    VideoError(const std::string& what, int error);
};

// Keeps the libraries' own remarks from standard error: the station itself tells what is wrong with a video.
void SilenceVideoLibraries();

}  // namespace Station
