#pragma once

#include "MultimediaComm/InfoOverlay.h"

#include <atomic>
#include <string>
#include <vector>

// The stamping itself, for other siblings that burn something into a video.
namespace Zell::MultimediaComm {

struct StampJob
{
    std::string source;  // UTF-8
    std::string target;
    InfoOverLineArrayType line_array_type = 0;
    std::vector<InfoOverlayLineArray> lines;
    CWaterMarkParam watermark;
};

// What InfoOverlay::StartCovert does; ends within a picture once stop is up. Any thread.
MULTIMEDIACOMM_API InfoOverlayErr StampVideo(const StampJob& job, const std::atomic<bool>& stop);

}  // namespace Zell::MultimediaComm
