#pragma once

#include "ExpectedFiles.h"
#include "RequestCheck.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace FetchyardClient {

// Whether the request asks for a watermark on videos of the disk, as against an export or a list of files.
bool IsTranscoding(const nlohmann::json& request);
// Makes ready a checked transcoding request: paths that are not absolute are put below the save folder, and
// the folders of the results are made. Gives the files that the task leaves when all goes well. A request
// that would lose a file, or a folder that can't be made, is a violation; then nothing must be handed over.
std::vector<ExpectedFile> PlanTranscoding(nlohmann::json& request, const std::string& save_folder,
                                          std::vector<Violation>& violations);

}  // namespace FetchyardClient
