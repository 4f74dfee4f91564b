#pragma once

#include "ExpectedFiles.h"
#include "RequestCheck.h"
#include "ZellTaskKit/DownloadTaskParam.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <vector>

namespace FetchyardClient {

// A record for the library, which makes one task of it, and the files that the task leaves when all goes
// well.
struct PlannedTask
{
    std::shared_ptr<ZellTaskKit::CDownloadTaskParam> record;
    std::vector<ExpectedFile> files;
};

// Whether the request is a list of single files, as against a report export.
bool IsFileList(const nlohmann::json& request);
// The records of a checked list: one for each picture, one for all server files, one for all videos, one for
// all clips. Their folders are made. A file that the library would add to, since it is there already or
// stands in the list twice, and a folder that can't be made, are violations; then nothing must be handed
// over.
std::vector<PlannedTask> PlanTasks(const nlohmann::json& request, const std::string& save_folder,
                                   std::vector<Violation>& violations);

}  // namespace FetchyardClient
