#pragma once

#include "station/Recording/Clip.h"
#include "station/Recording/Recordings.h"

#include <filesystem>
#include <functional>
#include <vector>

namespace Station {

// Asked often while a video is made; true ends the work.
using IsOver = std::function<bool()>;

// Writes the parts, one behind the other without the gaps between them, as one video. It begins with the
// frame that shows at the begin of the first part. Frames are copied as they are, but for those before the
// first key frame of a part that begins between two: these are encoded anew. A part whose pictures have
// another size than the first one's is encoded anew as well, with black at its edges where the shapes differ.
// Sound is copied where it is of the same kind as the first. A recording whose frames are not stored in the
// order of time may end a few frames late. False, and no file, if it was over before it was done. Throws
// VideoError.
bool CutClip(const std::filesystem::path& data, const std::vector<RecordingPart>& parts, ClipFormat format,
             const std::filesystem::path& file, const IsOver& is_over);

// The frame that shows at a time of a recording, as JPEG. Throws VideoError.
std::string GrabFrame(const std::filesystem::path& data, const Recording& recording, std::int64_t time);

}  // namespace Station
