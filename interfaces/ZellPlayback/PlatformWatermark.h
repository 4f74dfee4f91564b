#pragma once

#include "ZellPlayback/Export.h"

#include <string>

// The platform's watermark on whole video files. Both functions are reached by their plain names. Any thread;
// several files at a time.
extern "C" {

// Writes target from source (UTF-8, target's form by its extension) with the text burnt in, and blocks until
// done. The pictures become H.264, one for one; sound is copied. The text may have several lines; an empty
// one stands for the text of the client's watermark configuration, which also gives colour, size and
// transparency. kind says where: 0 tiled over the picture with the configured rotation and gap, 1 top left, 2
// top right, 3 bottom left, 4 bottom right, 5 in the middle; any other counts as 0. 0 done, 1 the source
// can't be read, 2 it holds no usable video, 3 the target can't be written, 4 ended by the stop call, 5
// anything else (no text to draw, no font, no encoder). Other than 0: the last error of the thread is set and
// there is no target; one that was there before stays.
ZELLPLAYBACK_API int AddPlatformWatermarkToVideoFile(const std::string& source, const std::string& text,
                                                     const int& kind, const std::string& target);

// Ends the work on that source, by the same text of the path, within a picture; harmless, and lost, if there
// is none. Does not wait for the end.
ZELLPLAYBACK_API void StopPlatformWatermarkToVideoFile(std::string source);

}  // extern "C"
