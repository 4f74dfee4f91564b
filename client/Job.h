#pragma once

#include "FileList.h"
#include "RequestCheck.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

// A request on its way from its text to tasks of the library; the command line and the window share it.
namespace FetchyardClient {

// A request's text and what to call it when it is talked about.
struct RequestSource
{
    std::string label;
    std::string text;
};

struct Job
{
    RequestSource source;
    nlohmann::json request;
    std::vector<PlannedTask> planned;          // of a list of single files
    std::vector<ExpectedFile> expected_files;  // of a transcoding
    std::vector<std::string> guids;            // once it was handed over
};

// Reads and checks the text. Violations come back where it does not fit; then nothing must be handed over.
std::vector<Violation> Accept(const RequestSource& source, Job& job);
// Plans a list of single files or a transcoding, and ciphers a password that is in clear. With the library
// hosted; makes folders.
std::vector<Violation> Prepare(bool encipher_passwords, Job& job);
// Makes tasks of the job and queues them. False with the reason in words.
bool HandOver(Job& job, std::string& reason);

// The name of the archive that a request makes; nothing if it makes none. Archives are made in one folder
// under the report's name alone, so two of one name must not be made at once.
std::optional<std::string> ArchiveName(const nlohmann::json& request);

}  // namespace FetchyardClient
