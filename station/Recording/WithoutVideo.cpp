// In place of all that reads or writes pictures of a recording, where the station is built without FFmpeg.
#include "station/Recording/ClipCutter.h"
#include "station/Recording/RecordingImport.h"
#include "station/Recording/RecordingSeeder.h"

#include <iostream>

namespace Station {
namespace {

constexpr char kWithoutVideo[] = "This station was built without video.";

}  // namespace

void SilenceVideoLibraries() {}

void SeedRecordings(Database& /*database*/, const std::filesystem::path& /*data*/, std::int64_t /*end*/,
                    int minutes)
{
    if (minutes > 0)
        std::cerr << "station: no recordings are seeded: " << kWithoutVideo << '\n';
}

Recording ImportRecording(Database& /*database*/, const std::filesystem::path& /*data*/,
                          const std::filesystem::path& /*file*/, std::int64_t /*camera*/,
                          std::int64_t /*begin*/)
{
    throw VideoError(kWithoutVideo);
}

bool CutClip(const std::filesystem::path& /*data*/, const std::vector<RecordingPart>& /*parts*/,
             ClipFormat /*format*/, const std::filesystem::path& /*file*/, const IsOver& /*is_over*/)
{
    throw VideoError(kWithoutVideo);
}

std::string GrabFrame(const std::filesystem::path& /*data*/, const Recording& /*recording*/,
                      std::int64_t /*time*/)
{
    throw VideoError(kWithoutVideo);
}

}  // namespace Station
