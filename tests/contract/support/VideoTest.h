#pragma once

#include "support/ExportTest.h"

#include <string>

namespace contract {

// An export of videos alone, "<tmp>/Alarm/NAME", with the video plug-in of the fakes.
class VideoTest : public ExportTest
{
protected:
    VideoTest();

    // Loads one of the modules of the fakes; whole at first.
    static void UsePlugin(const char* module);
    FetchyardBussiness::VideoDownloadEntry& AddVideo(const std::string& name, int video_format = 2);
    // An overlay of the type for a video.
    static void Stamp(FetchyardBussiness::VideoDownloadEntry& entry, int overlay_type = 0);
    // Which videos are marked as done, as "+-".
    std::string Marks();
    // The trace between the phase's begin and its end.
    std::string Phase();
    // The same text without the plug-in's long requests.
    static std::string Short(std::string trace);
    void MakeEvidence() { record_->str_evidence_param = R"({"Case":7})"; }
};

}  // namespace contract
