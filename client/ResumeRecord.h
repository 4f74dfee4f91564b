#pragma once

#include "ExpectedFiles.h"
#include "FetchyardLogicalHost/EngineHost.h"

#include <string>
#include <vector>

namespace FetchyardClient {

// What a resume record says and what it has lost against the request, for a person who brings its task back.
struct ResumeRecord
{
    // Where the task will write, with its final "/"; empty if the record does not say.
    std::string folder;
    // The files that the task leaves when all goes well, as far as the record names them.
    std::vector<ExpectedFile> files;
    // Sentences: what the record could not carry.
    std::vector<std::string> losses;
};

// save_folder is that of the present settings, with its final "/": exports of person pictures go below it.
// was_evidence says whether the task has run as an evidence export, which its record does not tell.
ResumeRecord ReadResumeRecord(const std::string& resume_text, FetchyardLogical::RecordKind kind,
                              const std::string& save_folder, bool was_evidence);

}  // namespace FetchyardClient
